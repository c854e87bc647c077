// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData.h"

#include "ZEFFilesystemTools/Platform/CatalogResult.h"

namespace zef {
namespace {

// Knows no lasting references yet, so that archives lead to files by their paths alone.
class KernelAliasData final : public AliasData {
public:
    std::int16_t make(const FSRef&, const FileURL&, Bytes&) override
    {
        return CatalogResult::ioError;
    }

    std::int16_t resolve(const Bytes&, FSRef&, FileURL&) override { return CatalogResult::ioError; }
};

} // namespace

AliasData& AliasData::system()
{
    static auto& aliasData = *new KernelAliasData; // never destroyed: late threads may still ask
    return aliasData;
}

} // namespace zef

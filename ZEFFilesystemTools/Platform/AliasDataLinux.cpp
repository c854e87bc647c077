// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasMaker.h"
#include "ZEFFilesystemTools/Platform/AliasResolver.h"
#include "ZEFFilesystemTools/Platform/CatalogResult.h"

namespace zef {
namespace {

class KernelAliasData final : public AliasData {
public:
    std::int16_t make(const FSRef& ref, const FileURL& url, Bytes& bytes) override
    {
        AliasRecord record;
        if (const auto error = AliasMaker(_evidences, record).make(ref, url))
            return error;
        bytes = record.encode();
        return bytes.empty() ? CatalogResult::ioError : CatalogResult::noError;
    }

    std::int16_t resolve(const Bytes& bytes, FSRef& ref, FileURL& url) override
    {
        AliasRecord record;
        if (!AliasRecord::decode(bytes, record))
            return CatalogResult::ioError;
        return AliasResolver({ _evidences, _folders, _opener }, record).resolve(ref, url);
    }

private:
    VolumeEvidences _evidences;
    AliasFolders _folders;
    HandleOpener _opener;
};

} // namespace

AliasData& AliasData::system()
{
    static auto& aliasData = *new KernelAliasData; // never destroyed: late threads may still ask
    return aliasData;
}

} // namespace zef

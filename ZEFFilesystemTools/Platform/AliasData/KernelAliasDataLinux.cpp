// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/KernelAliasData.h"

#include "ZEFFilesystemTools/Platform/AliasData/AliasMaker.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasResolver.h"
#include "ZEFFilesystemTools/Platform/Disk/CatalogResult.h"

namespace zef {

AliasData& AliasData::system()
{
    static auto& aliasData = *new KernelAliasData; // never destroyed: late threads may still ask
    return aliasData;
}

std::int16_t KernelAliasData::make(const FSRef& ref, const FileURL& url, Bytes& bytes)
{
    AliasRecord record;
    if (const auto error = AliasMaker(_evidences, record).make(ref, url))
        return error;
    bytes = record.encode();
    return bytes.empty() ? CatalogResult::ioError : CatalogResult::noError;
}

std::int16_t KernelAliasData::resolve(const Bytes& bytes, FSRef& ref, FileURL& url)
{
    AliasRecord record;
    if (!AliasRecord::decode(bytes, record))
        return CatalogResult::ioError;
    return AliasResolver({ _evidences, _folders, _opener }, record).resolve(ref, url);
}

} // namespace zef

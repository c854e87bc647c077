// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"

#include "ZEFFilesystemTools/Platform/AliasData/AliasRecorder.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasSearch.h"
#include "ZEFFilesystemTools/Platform/Disk/CatalogResult.h"

namespace zef {

AliasData& AliasData::system()
{
    static auto& aliasData = *new LinuxAliasData; // never destroyed: late threads may still ask
    return aliasData;
}

std::int16_t LinuxAliasData::make(const FSRef& ref, const FileURL& url, Bytes& bytes)
{
    AliasRecord record;
    if (const auto error = AliasRecorder(_evidences, record).make(ref, url))
        return error;
    bytes = record.encode();
    return bytes.empty() ? CatalogResult::ioError : CatalogResult::noError;
}

std::int16_t LinuxAliasData::resolve(const Bytes& bytes, FSRef& ref, FileURL& url)
{
    AliasRecord record;
    if (!AliasRecord::decode(bytes, record))
        return CatalogResult::ioError;
    return AliasSearch({ _evidences, _folders, _opener }, record).resolve(ref, url);
}

} // namespace zef

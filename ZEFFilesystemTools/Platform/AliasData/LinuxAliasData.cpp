// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"

#include "ZEFFilesystemTools/Platform/AliasData/AliasRecorder.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasSearch.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

namespace zef {

AliasData& AliasData::system()
{
    return immortal<LinuxAliasData>();
}

Expected<AliasData::Bytes> LinuxAliasData::make(const FSRef& ref, const FileURL& url)
{
    const auto record = AliasRecorder(_identities).make(ref, url);
    if (!record)
        return record.error();
    auto bytes = record->encode();
    if (bytes.empty())
        return FileError::io;
    return bytes;
}

Expected<AliasData::Target> LinuxAliasData::resolve(const Bytes& bytes)
{
    const auto record = AliasRecord::decode(bytes);
    if (!record)
        return FileError::io;
    return AliasSearch({ _identities, _indexes, _opener }, *record).resolve();
}

} // namespace zef

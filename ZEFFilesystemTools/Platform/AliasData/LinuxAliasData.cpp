// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"

#include "ZEFFilesystemTools/Platform/AliasData/AliasRecorder.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasSearch.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

namespace zef {

AliasData& AliasData::system()
{
    return immortal<LinuxAliasData>();
}

FileError LinuxAliasData::make(const FSRef& ref, const FileURL& url, Bytes& bytes)
{
    AliasRecord record;
    if (const auto error = AliasRecorder(_evidences, record).make(ref, url);
        error != FileError::none)
        return error;
    bytes = record.encode();
    return bytes.empty() ? FileError::io : FileError::none;
}

FileError LinuxAliasData::resolve(const Bytes& bytes, FSRef& ref, FileURL& url)
{
    AliasRecord record;
    if (!AliasRecord::decode(bytes, record))
        return FileError::io;
    return AliasSearch({ _evidences, _folders, _opener }, record).resolve(ref, url);
}

} // namespace zef

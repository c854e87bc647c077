// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasRecord.h"
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentityCache.h"

#include <cstdint>

namespace zef {

/// Makes the alias record of one object. One thread.
class AliasRecorder {
public:
    /// Both are borrowed.
    AliasRecorder(VolumeIdentityCache& evidences, AliasRecord& record)
        : _evidences(evidences)
        , _record(record)
    {
    }

    /// Fills in the record for the object that `ref` refers to, last seen at `url` (may be nil). A
    /// number of `FileError`; the record is undefined unless it is 0.
    FileError make(const FSRef& ref, const FileURL& url);

private:
    void takeIdentity(const FSRef& ref, const char* path);
    FileError takeWay(const char* path);

    VolumeIdentityCache& _evidences;
    AliasRecord& _record;
    std::uint32_t _device = 0;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasRecord.h"
#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentityCache.h"

#include <cstdint>

namespace zef {

/// Makes the alias record of one object. One thread.
class AliasRecorder {
public:
    /// The cache is borrowed.
    explicit AliasRecorder(VolumeIdentityCache& identities)
        : _identities(identities)
    {
    }

    /// The record of the object that `ref` refers to, last seen at `url` (may be null). Only once.
    Expected<AliasRecord> make(const FSRef& ref, const FileURL& url);

private:
    void takeIdentity(const FSRef& ref, const char* path);
    FileError takeWay(const char* path);

    VolumeIdentityCache& _identities;
    AliasRecord _record;
    std::uint32_t _device = 0;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasRecord.h"
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstdint>

namespace zef {

/// The object that an alias record leads to, and where it was found. One thread.
class AliasMatch {
public:
    /// The record is borrowed.
    explicit AliasMatch(const AliasRecord& record)
        : _record(record)
    {
    }

    const AliasRecord& record() const { return _record; }

    /// Looks whether the object itself is at `path`, on the mount with the number `mountID` (0: on
    /// any), and if so remembers that.
    bool lookAt(const char* path, std::uint64_t mountID = 0);

    /// What was found; only after `lookAt` returned true.
    FSRef ref(std::uint64_t parentInode = 0) const;
    FileURL url() const;
    const Stat& stat() const { return _stat; }
    const char* path() const { return _path.text(); }

private:
    bool isObject(const Stat& stat, const char* path) const;

    const AliasRecord& _record;
    Stat _stat;
    PathBytes _path;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <cstdint>
#include <ctime>

namespace zef {

/// What the system says of one object on disk in one call (statx(2)).
struct ZEF_EXPORT Stat {
    std::uint32_t device = 0;
    std::uint32_t mode = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::uint64_t linkCount = 0;
    std::timespec modificationTime{};
    std::timespec statusChangeTime{};

    /// Nanoseconds since 1 January 1970; meaningful only with `hasBirthTime`.
    std::int64_t birthTime = 0;
    bool hasBirthTime = false;

    /// Mode bit 0x4000 alone, so sockets count as folders too.
    bool isBasicDirectory() const { return mode & 0x4000u; }

    /// All bits of 0xA000, not the whole file type.
    bool isSymlink() const { return (mode & 0xA000u) == 0xA000u; }

    /// A real folder.
    bool isFolder() const { return (mode & 0170000u) == 0040000u; }

    bool isRegularFile() const { return (mode & 0170000u) == 0100000u; }
};

} // namespace zef

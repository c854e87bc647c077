// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace zef {

/// One entry of a folder: its name, what the system tells of it, and a reference to it.
struct ZEF_EXPORT CatalogEntry {
    /// Names have 255 bytes at the most (NAME_MAX, limits.h(0p)); a NUL may follow.
    std::array<char, 256> nameBytes;
    std::size_t nameLength = 0;
    bool isFolder = false;
    FSRef ref;
    Stat stat;

    std::string_view name() const { return { nameBytes.data(), nameLength }; }
};

} // namespace zef

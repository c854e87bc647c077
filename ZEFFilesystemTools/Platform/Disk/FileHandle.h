// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zef {

/// The file system's own lasting name for an object (name_to_handle_at(2)), which contains the
/// generation of its inode number where the file system has one. Handles longer than 40 bytes are
/// kept as a digest, which still distinguishes two objects.
struct ZEF_EXPORT FileHandle {
    std::uint8_t type = 0;
    std::uint8_t length = 0;
    bool isDigest = false;
    /// Whether the file system can open the object by this handle.
    bool isDecodable = false;
    std::array<std::byte, 40> bytes{};

    /// The handle that these bytes are, or their digest.
    static FileHandle of(std::uint8_t type, std::span<const std::byte> bytes, bool isDecodable);

    /// Whether there is a handle at all.
    bool isKnown() const { return length != 0; }

    friend bool operator==(const FileHandle& left, const FileHandle& right)
    {
        return left.type == right.type && left.length == right.length
            && left.isDigest == right.isDigest && left.bytes == right.bytes;
    }
};

} // namespace zef

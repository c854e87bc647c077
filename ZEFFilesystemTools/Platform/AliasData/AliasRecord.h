// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"
#include "ZEFFilesystemTools/Platform/Disk/FileHandle.h"
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentity.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zef {

/// What alias data say of an object: its identity, its volume, and the path to it.
///
/// As bytes, little-endian and without padding: "ZEFA", version 1, the body's length (32 bits) and
/// its FNV-1a digest (64 bits), which finds damage, not forgery; then the body. Plain data.
struct AliasRecord {
    static constexpr std::size_t mostBytes = 65536;
    static constexpr std::size_t mostComponents = 1024;

    /// One folder on the way, or the object itself, which is the last.
    struct Component {
        std::uint64_t inode = 0;
        std::string name;
    };

    std::uint64_t inode = 0;
    /// Nanoseconds since 1 January 1970.
    std::int64_t birthTime = 0;
    bool hasBirthTime = false;
    FileHandle handle;
    VolumeIdentity volume;
    /// From the mount point down; empty for the folder that the volume is mounted on.
    std::vector<Component> chain;

    /// No bytes if something in the record is longer than the form allows.
    AliasData::Bytes encode() const;

    /// None for bytes that `encode` can't have made. Any bytes will do.
    static std::optional<AliasRecord> decode(const AliasData::Bytes& bytes);

    /// Writes where the object was; false if that is longer than PATH_MAX allows.
    [[nodiscard]] bool path(PathBytes& path) const;

    /// The inode number of the object's folder, 0 if that is not on the volume.
    std::uint64_t parentInode() const;

    /// Whether more than the inode number identifies the object.
    bool hasStrongIdentity() const { return hasBirthTime || handle.isKnown(); }
};

} // namespace zef

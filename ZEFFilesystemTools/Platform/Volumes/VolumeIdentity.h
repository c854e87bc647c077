// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace zef {

/// What distinguishes a volume from others after it was unmounted, or the machine restarted.
struct VolumeIdentity {
    using UUID = std::array<std::uint8_t, 16>;

    /// The file system's type as the mount table has it.
    std::string type;
    /// All zero if it isn't known.
    UUID uuid{};
    /// What statfs(2) calls `f_fsid`; 0 if it isn't known, or unusable because it changes.
    std::uint64_t fileSystemID = 0;
    std::string mountPoint;

    /// Whether `other` is of the same volume: by the best that is known of both, in the end by
    /// where they are mounted.
    bool matches(const VolumeIdentity& other) const;
};

} // namespace zef

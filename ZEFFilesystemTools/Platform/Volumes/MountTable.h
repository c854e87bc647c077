// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zef {

/// One file system that is mounted where the process can see it (proc_pid_mountinfo(5)).
struct Mount {
    /// What statx(2) calls the mount's number.
    std::uint64_t id = 0;
    /// The file system's device; on btrfs its files have others.
    std::uint32_t device = 0;
    /// Where it is mounted.
    std::string folder;
    /// The type's name, such as "ext4" or "fuse.sshfs".
    std::string type;

    /// Whether it is mounted at `path` or somewhere below.
    bool isBelow(std::string_view path) const;
};

/// All mounts, in the order in which they were made; empty if the system doesn't say. Any
/// thread.
std::vector<Mount> readMounts();

/// The mounts that `text` lists, one a line; lines of another form are left out.
std::vector<Mount> parseMounts(std::string_view text);

} // namespace zef

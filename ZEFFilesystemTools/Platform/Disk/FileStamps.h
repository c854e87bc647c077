// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Time/Date.h"

#include <cstdint>
#include <ctime>

namespace zef {

/// Whose clock gives a file its time stamps.
enum class StampClock { ours, otherHosts };

/// What one look at a path saw, to find out whether the next look sees something else. Plain data;
/// any thread.
class FileStamps {
public:
    /// A look that saw nothing.
    FileStamps() = default;

    /// A look, begun at `lookedAt` by the wall clock, that saw `stat`.
    FileStamps(const Stat& stat, Date lookedAt, StampClock);

    /// Whether something may have happened since an earlier look at the same path. A look so soon
    /// after a change that the next one might get the same time stamps leaves it open, and then
    /// the answer is true.
    bool mayHaveChangedSince(const FileStamps& earlier) const;

private:
    bool hasStampsOf(const FileStamps& other) const;

    std::timespec _modificationTime{};
    std::timespec _statusChangeTime{};
    std::uint64_t _inode = 0;
    std::uint64_t _size = 0;
    bool _exists = false;
    bool _isUnsettled = false;
};

} // namespace zef

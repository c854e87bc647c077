// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileStamps.h"

#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include <cmath>
#include <tuple>

namespace zef {
namespace {

// File systems stamp with a clock that ticks every 1 to 10 ms, and tmpfs gives a folder no new
// stamp at all for an entry removed within the tick of the last one.
constexpr double ourSettlingTime = 0.05;

// For clocks that differ from ours, and for file systems that count in whole or even in two
// seconds.
constexpr double longSettlingTime = 2;

auto asTuple(const std::timespec& stamp)
{
    return std::tuple(stamp.tv_sec, stamp.tv_nsec);
}

bool isUnsettled(const std::timespec& newest, Date lookedAt, StampClock clock)
{
    const bool countsSeconds = newest.tv_nsec == 0;
    const auto settlingTime = clock == StampClock::otherHosts || countsSeconds ? longSettlingTime
                                                                               : ourSettlingTime;
    return std::abs(lookedAt.secondsSince1970() - secondsOfTimeStamp(newest)) <= settlingTime;
}

} // namespace

FileStamps::FileStamps(const Stat& stat, Date lookedAt, StampClock clock)
    : _modificationTime(stat.modificationTime)
    , _statusChangeTime(stat.statusChangeTime)
    , _inode(stat.inode)
    , _size(stat.size)
    , _exists(true)
{
    // Either may be the next to change; a modification time can also be set to anything.
    _isUnsettled = isUnsettled(_modificationTime, lookedAt, clock)
        || isUnsettled(_statusChangeTime, lookedAt, clock);
}

bool FileStamps::mayHaveChangedSince(const FileStamps& earlier) const
{
    if (!_exists && !earlier._exists)
        return false;
    return earlier._isUnsettled || !hasStampsOf(earlier);
}

bool FileStamps::hasStampsOf(const FileStamps& other) const
{
    return _exists == other._exists && _inode == other._inode && _size == other._size
        && asTuple(_modificationTime) == asTuple(other._modificationTime)
        && asTuple(_statusChangeTime) == asTuple(other._statusChangeTime);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <ctime>

namespace zef {

/// A file's time stamp in seconds since 1 January 1970. Nanoseconds that are negative count as
/// none. Two stamps are equal if these numbers are.
inline double secondsOfTimeStamp(const std::timespec& stamp)
{
    return static_cast<double>(stamp.tv_sec)
        + std::max(static_cast<double>(stamp.tv_nsec) / 1e9, 0.0);
}

} // namespace zef

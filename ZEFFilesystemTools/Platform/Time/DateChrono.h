// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/Date.h"

#include <chrono>

namespace zef {

inline Date dateFromTimePoint(std::chrono::system_clock::time_point time)
{
    return Date::withSecondsSince1970(
        std::chrono::duration<double>(time.time_since_epoch()).count());
}

/// Rounded towards 1970 to what the system's clock can tell apart.
inline std::chrono::system_clock::time_point timePointFromDate(Date date)
{
    return std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(
            std::chrono::duration<double>(date.secondsSince1970())));
}

} // namespace zef

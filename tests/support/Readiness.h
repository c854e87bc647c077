// SPDX-License-Identifier: MIT
#pragma once

#include <poll.h>

/// Whether `descriptor` is readable now.
inline bool isReadable(int descriptor)
{
    pollfd watched{ descriptor, POLLIN, 0 };
    return poll(&watched, 1, 0) == 1;
}

/// Waits until `descriptor` is readable; false if that takes so long that it never will be.
inline bool becomesReadable(int descriptor)
{
    constexpr int milliseconds = 60'000;
    pollfd watched{ descriptor, POLLIN, 0 };
    return poll(&watched, 1, milliseconds) == 1;
}

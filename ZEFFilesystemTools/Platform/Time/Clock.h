// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Time/Date.h"

namespace zef {

/// Says what time it is, and lets time pass. Any thread.
class ZEF_EXPORT Clock : public SharedService<Clock> {
public:
    virtual ~Clock() = default;

    static Clock& system();

    /// The wall clock, which may be set back or forward at any time (CLOCK_REALTIME,
    /// clock_gettime(2)).
    virtual Date now() = 0;

    /// Seconds since some fixed moment; never goes backwards (CLOCK_MONOTONIC).
    virtual double monotonicSeconds() = 0;

    /// Blocks the calling thread until this much time has passed; returns at once for 0 and less.
    virtual void sleep(double seconds) = 0;
};

} // namespace zef

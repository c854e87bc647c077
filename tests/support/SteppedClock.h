// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <atomic>
#include <cmath>
#include <cstdint>

/// A clock that stands still until the test steps it. Counts whole nanoseconds, so that ten steps
/// of 0.1 seconds are exactly one second. Any thread.
class SteppedClock final : public zef::Clock {
public:
    zef::Date now() override { return zef::Date(seconds(_wall)); }
    double monotonicSeconds() override { return seconds(_monotonic); }
    void sleep(double seconds) override { advance(seconds); }

    /// Lets time pass on both clocks.
    void advance(double seconds)
    {
        _wall += nanoseconds(seconds);
        _monotonic += nanoseconds(seconds);
    }

    /// Sets the wall clock alone, as an administrator may, also back.
    void setWallClock(zef::Date date) { _wall = nanoseconds(date.secondsSinceReferenceDate()); }

private:
    static std::int64_t nanoseconds(double seconds) { return std::llround(seconds * 1e9); }
    static double seconds(std::int64_t nanoseconds)
    {
        return static_cast<double>(nanoseconds) / 1e9;
    }

    std::atomic<std::int64_t> _wall{ nanoseconds(700000000) };
    std::atomic<std::int64_t> _monotonic{ nanoseconds(5000) };
};

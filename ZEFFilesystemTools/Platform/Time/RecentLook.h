// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <atomic>

namespace zef {

/// When a look at the disk was taken. For a moment it serves the next question too: nobody can know
/// whether that was asked before or after a change that was made meanwhile.
class RecentLook {
public:
    /// How many seconds a look serves; 0 for each question its own. 50 µs at first: long enough for
    /// all questions about one file, too short for anybody to have acted on an answer. Any thread.
    static void setLifetime(double seconds) { lifetime() = seconds; }

    void take() { _seconds = Clock::shared().monotonicSeconds(); }
    bool serves() const { return age() < lifetime(); }

private:
    static std::atomic<double>& lifetime()
    {
        static std::atomic<double> seconds{ 50e-6 };
        return seconds;
    }

    double age() const
    {
        const double age = Clock::shared().monotonicSeconds() - _seconds;
        return _seconds < 0 || age < 0 ? 1 : age;
    }

    double _seconds = -1;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

/// The clock that a run loop reads.
enum class ClockKind { system, stepped };

/// A run loop by either clock, and a record of what it ran; for tests that need no time to pass.
class RunLoopFixture : public testing::TestWithParam<ClockKind> {
protected:
    zef::Clock& clock()
    {
        if (GetParam() == ClockKind::stepped)
            return steppedClock;
        return zef::Clock::system();
    }

    void note(std::string what) { order.push_back(std::move(what)); }

    void post(const std::string& what)
    {
        loop.post([this, what] { note(what); });
    }

    /// A one-shot timer for the next pass.
    zef::Ref<zef::Timer> schedule(
        const std::string& what, zef::TimerModes modes = zef::TimerModes::defaultMode)
    {
        auto timer = zef::makeRef<zef::Timer>(
            0, 0, zef::Repeats::no, [this, what](zef::Timer&) { note(what); });
        loop.addTimer(timer, modes);
        return timer;
    }

    using Order = std::vector<std::string>;

    SteppedClock steppedClock;
    zef::RunLoop loop{ clock() };
    Order order;
};

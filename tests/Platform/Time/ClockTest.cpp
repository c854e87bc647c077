// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include "ZEFFilesystemTools/Platform/Time/DateChrono.h"

#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

using zef::Clock;

TEST(ClockTest, TellsTheTimeOfTheWallClock)
{
    const auto before = zef::dateFromTimePoint(std::chrono::system_clock::now());
    const auto now = Clock::system().now();
    const auto after = zef::dateFromTimePoint(std::chrono::system_clock::now());

    // A microsecond for what a double can't hold.
    EXPECT_GE(now.secondsSince1970(), before.secondsSince1970() - 1e-6);
    EXPECT_LE(now.secondsSince1970(), after.secondsSince1970() + 1e-6);
}

TEST(ClockTest, MonotonicSecondsAreThoseOfTheSteadyClock)
{
    using std::chrono::steady_clock;
    const auto steadySeconds = [] {
        return std::chrono::duration<double>(steady_clock::now().time_since_epoch()).count();
    };

    const auto before = steadySeconds();
    const auto now = Clock::system().monotonicSeconds();
    const auto after = steadySeconds();

    EXPECT_GE(now, before - 1e-6);
    EXPECT_LE(now, after + 1e-6);
}

TEST(ClockTest, MonotonicSecondsNeverGoBack)
{
    auto last = Clock::system().monotonicSeconds();
    for (int reading = 0; reading < 10000; ++reading) {
        const auto now = Clock::system().monotonicSeconds();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(ClockTest, TheSharedClockMayBeReplaced)
{
    SteppedClock clock;

    Clock::replaceShared(&clock);
    EXPECT_EQ(&Clock::shared(), &clock);
    Clock::replaceShared(nullptr);

    EXPECT_EQ(&Clock::shared(), &Clock::system());
}

TEST(SystemClockTest, SleepsAtLeastAsLongAsItShould)
{
    auto& clock = zef::Clock::system();
    const auto begin = clock.monotonicSeconds();

    clock.sleep(0.001);

    EXPECT_GE(clock.monotonicSeconds() - begin, 0.001);
}

TEST(SteppedClockTest, SleepsWithoutWaiting)
{
    SteppedClock clock;
    const auto begin = clock.monotonicSeconds();

    clock.sleep(1e6);

    EXPECT_DOUBLE_EQ(clock.monotonicSeconds(), begin + 1e6);
}

TEST(SteppedClockTest, MovesOnlyWhenItIsStepped)
{
    SteppedClock clock;
    const auto date = clock.now().secondsSinceReferenceDate();
    const auto seconds = clock.monotonicSeconds();
    EXPECT_EQ(clock.monotonicSeconds(), seconds);

    clock.advance(2.5);

    EXPECT_DOUBLE_EQ(clock.now().secondsSinceReferenceDate(), date + 2.5);
    EXPECT_DOUBLE_EQ(clock.monotonicSeconds(), seconds + 2.5);
}

TEST(SteppedClockTest, ItsWallClockMayBeSetBack)
{
    SteppedClock clock;
    const auto seconds = clock.monotonicSeconds();

    clock.setWallClock(zef::Date(1));

    EXPECT_EQ(clock.now(), zef::Date(1));
    EXPECT_EQ(clock.monotonicSeconds(), seconds);
}

} // namespace

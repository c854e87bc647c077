// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using zef::makeRef;
using zef::Ref;
using zef::Repeats;
using zef::RunLoop;
using zef::Timer;

class TimerTest : public testing::Test {
protected:
    Ref<Timer> add(
        double firstDelay, double interval, Repeats repeats, const std::string& name = "")
    {
        auto timer = makeRef<Timer>(
            firstDelay, interval, repeats, [this, name](Timer&) { fired.push_back(name); });
        loop.addTimer(timer);
        return timer;
    }

    /// The number of firings after a step of the clock and one pass.
    std::size_t firingsAfter(double seconds)
    {
        fired.clear();
        clock.advance(seconds);
        loop.perform();
        return fired.size();
    }

    using Names = std::vector<std::string>;

    SteppedClock clock;
    RunLoop loop{ clock };
    Names fired;
};

using TimerDeathTest = TimerTest; // GoogleTest runs these first, before there are threads

TEST_F(TimerTest, FiresWhenItsFirstDelayIsThroughAndNotBefore)
{
    add(30, 0, Repeats::no);

    EXPECT_EQ(firingsAfter(29.999999), 0u);
    EXPECT_EQ(firingsAfter(0.000001), 1u);
}

TEST_F(TimerTest, AOneShotTimerFiresOnce)
{
    auto timer = add(1, 1, Repeats::no);

    EXPECT_EQ(firingsAfter(1), 1u);
    EXPECT_EQ(firingsAfter(1), 0u);
    EXPECT_FALSE(timer->isValid());
}

TEST_F(TimerTest, ARepeatingTimerFiresAtEveryInterval)
{
    add(0.1, 0.5, Repeats::yes);

    EXPECT_EQ(firingsAfter(0.1), 1u);
    EXPECT_EQ(firingsAfter(0.4), 0u);
    EXPECT_EQ(firingsAfter(0.1), 1u);
    EXPECT_EQ(firingsAfter(0.5), 1u);
}

TEST_F(TimerTest, KeepsItsGridExactlyOverManyFirings)
{
    add(0.1, 0.1, Repeats::yes);

    for (int firing = 0; firing < 10000; ++firing)
        ASSERT_EQ(firingsAfter(0.1), 1u);
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.1);
}

TEST_F(TimerTest, FiresOncePerPassAfterAStallAndKeepsItsGrid)
{
    add(1, 1, Repeats::yes);

    EXPECT_EQ(firingsAfter(5.25), 1u);
    EXPECT_EQ(firingsAfter(0), 0u);
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.75);
    EXPECT_EQ(firingsAfter(0.75), 1u);
}

TEST_F(TimerTest, TheTimeOfItsActionCountsAsAStall)
{
    auto timer = makeRef<Timer>(1, 1, Repeats::yes, [this](Timer&) {
        fired.emplace_back();
        clock.advance(2.5);
    });
    loop.addTimer(timer);

    EXPECT_EQ(firingsAfter(1), 1u);
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.5);
    timer->invalidate();
}

TEST_F(TimerTest, FiringsGoByDueTimeAndNotByOrderOfAdding)
{
    add(3, 0, Repeats::no, "third");
    add(1, 0, Repeats::no, "first");
    add(2, 0, Repeats::no, "second");

    clock.advance(3);
    loop.perform();

    EXPECT_EQ(fired, (Names{ "first", "second", "third" }));
}

TEST_F(TimerTest, WaitsLongerInAPausedModeAndFiresOnceAfterwards)
{
    add(3, 3, Repeats::yes);
    loop.pushMode(zef::RunLoopMode::modal);
    EXPECT_EQ(firingsAfter(10), 0u);

    loop.popMode();

    EXPECT_EQ(firingsAfter(0), 1u);
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 2);
}

TEST_F(TimerTest, TheWallClockDoesNotMatter)
{
    add(10, 0, Repeats::no);

    clock.setWallClock(zef::Date(0));
    EXPECT_EQ(firingsAfter(5), 0u);
    clock.setWallClock(zef::Date(1e9));
    EXPECT_EQ(firingsAfter(4), 0u);
    EXPECT_EQ(firingsAfter(1), 1u);
}

TEST_F(TimerTest, NeverFiresAfterItWasInvalidated)
{
    auto timer = add(1, 1, Repeats::yes);
    EXPECT_EQ(firingsAfter(1), 1u);

    timer->invalidate();
    timer->invalidate();

    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(firingsAfter(10), 0u);
}

TEST_F(TimerTest, IsKeptAliveByItsRunLoopUntilItIsInvalidated)
{
    Timer* borrowed = add(1, 1, Repeats::yes).get();
    EXPECT_EQ(borrowed->retainCount(), 1u);

    // The run loop's reference is the last one.
    borrowed->invalidate();

    EXPECT_EQ(firingsAfter(1), 0u);
}

TEST_F(TimerTest, LetsGoOfItsActionWhenItIsInvalidated)
{
    auto owned = std::make_shared<int>();
    auto timer = loop.scheduleTimer(1, Repeats::yes, [owned](Timer&) {});

    timer->invalidate();

    EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(TimerTest, AOneShotTimerIsInvalidInsideItsActionAndOwnsItsClosureUntilTheEnd)
{
    auto owned = std::make_shared<int>();
    bool wasValid = true;
    long ownersInside = 0;
    auto timer = loop.scheduleTimer(1, Repeats::no, [&wasValid, &ownersInside, owned](Timer& self) {
        wasValid = self.isValid();
        self.invalidate();
        ownersInside = owned.use_count();
    });

    firingsAfter(1);

    EXPECT_FALSE(wasValid);
    EXPECT_EQ(ownersInside, 2);
    EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(TimerTest, ARepeatingTimerMayInvalidateItselfAndOwnsItsClosureUntilTheEnd)
{
    auto owned = std::make_shared<int>();
    long ownersInside = 0;
    auto timer = loop.scheduleTimer(1, Repeats::yes, [&ownersInside, owned](Timer& self) {
        self.invalidate();
        ownersInside = owned.use_count();
    });

    firingsAfter(1);

    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(ownersInside, 2);
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_EQ(timer->retainCount(), 1u);
}

TEST_F(TimerTest, HandsItselfToItsActionAlive)
{
    const Timer* received = nullptr;
    Timer* borrowed = loop.scheduleTimer(1, Repeats::no, [&](Timer& self) { received = &self; })
                          .get();

    firingsAfter(1);

    EXPECT_EQ(received, borrowed);
}

TEST_F(TimerTest, WhatItsClosureOwnsMayAddAndInvalidateTimersWhenItGoes)
{
    auto other = add(2, 2, Repeats::yes);
    Ref<Timer> replacement;
    auto owned = std::shared_ptr<void>(nullptr, [&](void*) {
        other->invalidate();
        replacement = add(0, 0, Repeats::no, "replacement");
    });
    loop.scheduleTimer(1, Repeats::no, [owned = std::move(owned)](Timer&) {});

    EXPECT_EQ(firingsAfter(1), 0u);
    EXPECT_FALSE(other->isValid());
    EXPECT_EQ(firingsAfter(0), 1u);
}

TEST_F(TimerTest, IntervalsThatAreNotPositiveCountAsTheShortest)
{
    for (const auto interval : { 0.0, -1.0, std::numeric_limits<double>::quiet_NaN() })
        EXPECT_EQ(makeRef<Timer>(1, interval, Repeats::yes, [](Timer&) {})->interval(), 0.0001);
}

TEST_F(TimerTest, FirstDelaysThatAreNotPositiveMeanTheNextPass)
{
    for (const auto delay : { 0.0, -1.0, std::numeric_limits<double>::quiet_NaN() }) {
        add(delay, 1, Repeats::no);
        EXPECT_EQ(firingsAfter(0), 1u) << delay;
    }
}

TEST_F(TimerTest, AnInfiniteDelayMeansNever)
{
    auto timer = add(std::numeric_limits<double>::infinity(), 1, Repeats::yes);

    EXPECT_EQ(firingsAfter(1e9), 0u);
    EXPECT_TRUE(timer->isValid());
}

TEST_F(TimerTest, TellsWhatItWasMadeWith)
{
    const auto timer = makeRef<Timer>(0.1, 0.5, Repeats::yes, [](Timer&) {});

    EXPECT_EQ(timer->firstDelay(), 0.1);
    EXPECT_EQ(timer->interval(), 0.5);
    EXPECT_TRUE(timer->repeats());
    EXPECT_TRUE(timer->isValid());
    EXPECT_TRUE(timer->isKindOfClass(Timer::classObject));
}

TEST_F(TimerTest, AFiringTakesNothingFromTheHeap)
{
    if (!AllocationCounter::isAvailable())
        GTEST_SKIP() << "the heap is a sanitizer's";
    int firings = 0;
    auto timer = loop.scheduleTimer(1, Repeats::yes, [&](Timer&) { ++firings; });

    clock.advance(1);
    const AllocationCounter allocations;
    loop.perform();

    EXPECT_EQ(allocations.count(), 0u);
    EXPECT_EQ(firings, 1);
}

#ifndef NDEBUG
TEST_F(TimerDeathTest, AddingATimerTwiceIsAProgrammingError)
{
    auto timer = add(1, 1, Repeats::yes);

    EXPECT_DEATH(loop.addTimer(timer), "added to one run loop, once");
}

TEST_F(TimerDeathTest, InvalidatingATimerOnASecondThreadIsAProgrammingError)
{
    auto timer = add(1, 1, Repeats::yes);

    EXPECT_DEATH(std::thread([&] { timer->invalidate(); }).join(), "isOnItsThread");
}

TEST_F(TimerDeathTest, PassesOnASecondThreadAreAProgrammingError)
{
    loop.perform();

    EXPECT_DEATH(std::thread([&] { loop.perform(); }).join(), "isOnItsThread");
}
#endif

} // namespace

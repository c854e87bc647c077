// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/Readiness.h"
#include "tests/support/RunLoopFixture.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

namespace {

using zef::Ref;
using zef::Repeats;
using zef::RunLoop;
using zef::RunLoopMode;
using zef::Timer;
using zef::TimerModes;

class RunLoopTest : public RunLoopFixture { };

INSTANTIATE_TEST_SUITE_P(EveryClock, RunLoopTest,
    testing::Values(ClockKind::system, ClockKind::stepped),
    [](const auto& value) { return value.param == ClockKind::system ? "System" : "Stepped"; });

TEST_P(RunLoopTest, RunsPostedActionsInOrder)
{
    post("a");
    post("b");
    post("c");
    EXPECT_EQ(order, Order());

    loop.perform();

    EXPECT_EQ(order, (Order{ "a", "b", "c" }));
}

TEST_P(RunLoopTest, RunsAPostedActionOnce)
{
    post("a");

    loop.perform();
    loop.perform();

    EXPECT_EQ(order, Order{ "a" });
}

TEST_P(RunLoopTest, WhatAPostedActionPostsRunsInTheNextPass)
{
    loop.post([this] { post("later"); });
    post("now");

    loop.perform();
    EXPECT_EQ(order, Order{ "now" });
    loop.perform();

    EXPECT_EQ(order, (Order{ "now", "later" }));
}

TEST_P(RunLoopTest, RunsPostedActionsBeforeTimersAndInEveryMode)
{
    schedule("timer", TimerModes::common);
    post("posted");
    loop.pushMode(RunLoopMode::modal);

    loop.perform();

    EXPECT_EQ(order, (Order{ "posted", "timer" }));
}

TEST_P(RunLoopTest, ATimerWithoutDelayFiresInTheNextPassAndNotWhileItIsScheduled)
{
    auto timer = schedule("timer");
    EXPECT_EQ(order, Order());

    loop.perform();

    EXPECT_EQ(order, Order{ "timer" });
    EXPECT_FALSE(timer->isValid());
}

TEST_P(RunLoopTest, TimersThatAreDueTogetherFireInTheOrderOfAdding)
{
    schedule("a");
    schedule("b", TimerModes::common);
    schedule("c");

    loop.perform();

    EXPECT_EQ(order, (Order{ "a", "b", "c" }));
}

TEST_P(RunLoopTest, ATimerThatIsAddedDuringAPassWaitsForTheNext)
{
    loop.post([this] { schedule("by action"); });
    loop.scheduleTimer(0, Repeats::no, [this](Timer&) { schedule("by timer"); });
    schedule("at once");

    loop.perform();
    EXPECT_EQ(order, Order{ "at once" });
    loop.perform();

    EXPECT_EQ(order, (Order{ "at once", "by action", "by timer" }));
}

TEST_P(RunLoopTest, ATimerThatAnEarlierOneInvalidatesDoesNotFire)
{
    Ref<Timer> second;
    loop.scheduleTimer(0, Repeats::no, [&](Timer&) { second->invalidate(); });
    second = schedule("second");
    schedule("third");

    loop.perform();

    EXPECT_EQ(order, Order{ "third" });
}

TEST_P(RunLoopTest, DefaultModeTimersPauseInOtherModes)
{
    schedule("default");
    schedule("common", TimerModes::common);

    loop.pushMode(RunLoopMode::eventTracking);
    loop.perform();
    EXPECT_EQ(order, Order{ "common" });
    loop.popMode();
    loop.perform();

    EXPECT_EQ(order, (Order{ "common", "default" }));
}

TEST_P(RunLoopTest, AModeThatIsPushedDuringAPassCountsAtOnce)
{
    loop.scheduleTimer(0, Repeats::no, [this](Timer&) { loop.pushMode(RunLoopMode::modal); });
    schedule("default");
    schedule("common", TimerModes::common);

    loop.perform();

    EXPECT_EQ(loop.mode(), RunLoopMode::modal);
    EXPECT_EQ(order, Order{ "common" });
}

TEST_P(RunLoopTest, ANestedPassTakesOverWhatTheOuterOneHasLeft)
{
    loop.post([this] {
        note("outer");
        loop.perform();
        note("outer ends");
    });
    post("posted");
    schedule("timer");

    loop.perform();

    EXPECT_EQ(order, (Order{ "outer", "posted", "timer", "outer ends" }));
}

TEST_P(RunLoopTest, ATimerDoesNotFireInsideItsOwnAction)
{
    int firings = 0;
    auto timer = zef::makeRef<Timer>(0, 0.000001, Repeats::yes, [&](Timer&) {
        ++firings;
        steppedClock.advance(1);
        while (loop.secondsUntilNextTimer() == 0)
            loop.perform();
    });
    loop.addTimer(timer);

    loop.perform();

    EXPECT_EQ(firings, 1);
    EXPECT_TRUE(timer->isValid());
}

TEST_P(RunLoopTest, AnExceptionLeavesTheRestForTheNextPass)
{
    loop.post([] { throw std::runtime_error("host"); });
    post("posted");
    schedule("timer");

    EXPECT_THROW(loop.perform(), std::runtime_error);
    EXPECT_EQ(order, Order());
    EXPECT_TRUE(becomesReadable(loop.descriptor()));
    loop.perform();

    EXPECT_EQ(order, (Order{ "posted", "timer" }));
}

TEST_P(RunLoopTest, ARepeatingTimerGoesOnAfterAnException)
{
    int firings = 0;
    auto timer = zef::makeRef<Timer>(0, 1000, Repeats::yes, [&](Timer&) {
        ++firings;
        throw std::runtime_error("host");
    });
    loop.addTimer(timer);

    EXPECT_THROW(loop.perform(), std::runtime_error);

    EXPECT_EQ(firings, 1);
    EXPECT_TRUE(timer->isValid());
    EXPECT_GT(loop.secondsUntilNextTimer(), 0);
    EXPECT_LE(loop.secondsUntilNextTimer(), 1000);
}

TEST_P(RunLoopTest, ItsEndInvalidatesItsTimersAndDropsWhatWasPosted)
{
    auto owned = std::make_shared<int>();
    auto other = std::make_unique<RunLoop>(clock());
    auto timer = other->scheduleTimer(1, Repeats::yes, [owned](Timer&) {});
    other->post([owned] {});
    EXPECT_EQ(owned.use_count(), 3);

    other = nullptr;

    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(timer->retainCount(), 1u);
    EXPECT_EQ(owned.use_count(), 1);
}

TEST_P(RunLoopTest, ATimerThatIsAddedToAnEndingLoopIsInvalidated)
{
    Ref<Timer> late;
    auto other = std::make_unique<RunLoop>(clock());
    auto* borrowed = other.get();
    auto adder = std::shared_ptr<void>(
        nullptr, [&](void*) { late = borrowed->scheduleTimer(1, Repeats::yes, [](Timer&) {}); });
    other->scheduleTimer(1, Repeats::no, [adder = std::move(adder)](Timer&) {});

    other = nullptr;

    ASSERT_TRUE(late);
    EXPECT_FALSE(late->isValid());
}

TEST_P(RunLoopTest, AnIdlePassTakesNothingFromTheHeap)
{
    if (!AllocationCounter::isAvailable())
        GTEST_SKIP() << "the heap is a sanitizer's";
    auto timer = loop.scheduleTimer(1000, Repeats::yes, [](Timer&) {});
    loop.descriptor();
    loop.perform();

    const AllocationCounter allocations;
    loop.perform();

    EXPECT_EQ(allocations.count(), 0u);
}

TEST_P(RunLoopTest, HasNothingToWaitForWhenNothingIsScheduled)
{
    EXPECT_EQ(loop.secondsUntilNextTimer(), std::numeric_limits<double>::infinity());

    loop.scheduleTimer(1, Repeats::no, [](Timer&) {});
    loop.pushMode(RunLoopMode::modal);

    EXPECT_EQ(loop.secondsUntilNextTimer(), std::numeric_limits<double>::infinity());
}

TEST_P(RunLoopTest, HasNothingToWaitForWithWhenSomethingIsDue)
{
    auto timer = schedule("timer");
    EXPECT_EQ(loop.secondsUntilNextTimer(), 0);
    timer->invalidate();

    post("posted");

    EXPECT_EQ(loop.secondsUntilNextTimer(), 0);
}

TEST_P(RunLoopTest, IgnoresNilAndInvalidTimersAndEmptyActions)
{
    auto invalid = zef::makeRef<Timer>(0, 0, Repeats::no, [](Timer&) {});
    invalid->invalidate();

    loop.addTimer(nullptr);
    loop.addTimer(invalid);
    loop.post(nullptr);
    loop.scheduleTimer(0, Repeats::no, nullptr);
    loop.perform();

    EXPECT_EQ(loop.secondsUntilNextTimer(), std::numeric_limits<double>::infinity());
}

} // namespace

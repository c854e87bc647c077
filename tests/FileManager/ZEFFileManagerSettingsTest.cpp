// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/ManagerFixture.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// How the file manager loads, and when it polls.
class ZEFFileManagerSettingsTest : public ManagerFixture {
protected:
    double untilNextPoll() const { return loop.secondsUntilNextTimer(); }
};

// --- asynchronous

TEST_F(ZEFFileManagerSettingsTest, LoadsAtOnceByDefault)
{
    folder.write("watched/a");

    auto* subscription = subscribe(newSubscriber());

    EXPECT_FALSE(subscription->isLoading());
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFFileManagerSettingsTest, LoadsInTheBackgroundWhenToldSo)
{
    holdReaders();
    EXPECT_TRUE(manager.setAsynchronous(true));
    EXPECT_TRUE(manager.asynchronous());

    auto* subscription = subscribe(newSubscriber());

    EXPECT_TRUE(subscription->isLoading());
    subscription->loadImmediately();
}

TEST_F(ZEFFileManagerSettingsTest, TakesEitherWayOfLoadingUntilTheFirstSubscription)
{
    EXPECT_TRUE(manager.setAsynchronous(true));
    EXPECT_TRUE(manager.setAsynchronous(false));
    subscribe(newSubscriber());

    EXPECT_FALSE(manager.setAsynchronous(true));
    EXPECT_FALSE(manager.asynchronous());
    EXPECT_FALSE(manager.setAsynchronous(false));
}

TEST_F(ZEFFileManagerSettingsTest, FreezesTheWayOfLoadingEvenWhenThereCanBeNoSubscription)
{
    folder.write("file");
    EXPECT_EQ(subscribe(newSubscriber(), "file"), nullptr);
    log.clear();

    EXPECT_FALSE(manager.setAsynchronous(true));
}

TEST_F(ZEFFileManagerSettingsTest, FreezesNothingForNil)
{
    EXPECT_EQ(manager.subscribeForFile(&newSubscriber(), nullptr), nullptr);

    EXPECT_TRUE(manager.setAsynchronous(true));
    EXPECT_TRUE(manager.setFileClass(&ZEFFileItem::classObject));
}

TEST_F(ZEFFileManagerSettingsTest, FreezesNoWayOfLoadingForAPathThatLeadsToNoFile)
{
    EXPECT_EQ(subscribe(newSubscriber(), "missing"), nullptr);
    manager.unsubscribeForPath(&newSubscriber(), folder.path("watched"));

    EXPECT_TRUE(manager.setAsynchronous(true));
}

// --- pollingInterval

TEST_F(ZEFFileManagerSettingsTest, PollsEveryThreeSecondsFromTheFirstSubscriptionOn)
{
    EXPECT_EQ(untilNextPoll(), never);
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    EXPECT_DOUBLE_EQ(untilNextPoll(), 3.0);

    for (int tick = 1; tick <= 3; ++tick) {
        folder.write("watched/" + std::to_string(tick));
        step(2.999);
        EXPECT_THAT(subscriber.calls, SizeIs(tick - 1));
        step(0.001);
        EXPECT_THAT(subscriber.calls, SizeIs(tick));
    }
}

TEST_F(ZEFFileManagerSettingsTest, KeepsItsTimerWhenTheIntervalStaysTheSame)
{
    subscribe(newSubscriber());
    step(1);

    manager.setPollingInterval(3.0);

    EXPECT_DOUBLE_EQ(untilNextPoll(), 2.0);
    EXPECT_EQ(manager.pollingInterval(), 3.0F);
}

TEST_F(ZEFFileManagerSettingsTest, DoesNothingForTheSameIntervalOnAFreshManager)
{
    manager.setPollingInterval(3.0);

    EXPECT_EQ(untilNextPoll(), never);
}

TEST_F(ZEFFileManagerSettingsTest, BeginsAnewWithAnotherInterval)
{
    subscribe(newSubscriber());
    step(1);

    manager.setPollingInterval(5.0);

    EXPECT_EQ(manager.pollingInterval(), 5.0F);
    EXPECT_DOUBLE_EQ(untilNextPoll(), 5.0);
    step(5);
    EXPECT_DOUBLE_EQ(untilNextPoll(), 5.0);
}

TEST_F(ZEFFileManagerSettingsTest, PollsWithAnotherIntervalEvenWhenNothingIsKept)
{
    manager.setPollingInterval(5.0);

    EXPECT_DOUBLE_EQ(untilNextPoll(), 5.0);
}

TEST_F(ZEFFileManagerSettingsTest, BeginsAnewEachTimeForAnIntervalThatAFloatCantHold)
{
    subscribe(newSubscriber());
    manager.setPollingInterval(0.1);
    EXPECT_EQ(manager.pollingInterval(), 0.1F);
    clock.advance(0.05);

    manager.setPollingInterval(0.1);

    EXPECT_NEAR(untilNextPoll(), static_cast<double>(0.1F), 1e-9);
}

TEST_F(ZEFFileManagerSettingsTest, KeepsItsTimerForAnIntervalThatAFloatCanHold)
{
    subscribe(newSubscriber());
    manager.setPollingInterval(0.5);
    clock.advance(0.25);

    manager.setPollingInterval(0.5);

    EXPECT_DOUBLE_EQ(untilNextPoll(), 0.25);
}

TEST_F(ZEFFileManagerSettingsTest, StoresAnotherIntervalWithoutPollingWhilePaused)
{
    subscribe(newSubscriber());
    manager.setPaused(true);

    manager.setPollingInterval(5.0);
    EXPECT_EQ(untilNextPoll(), never);

    manager.setPaused(false);
    EXPECT_DOUBLE_EQ(untilNextPoll(), 5.0);
}

// --- paused

TEST_F(ZEFFileManagerSettingsTest, PollsNothingWhilePaused)
{
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    folder.write("watched/a");

    manager.setPaused(true);
    EXPECT_TRUE(manager.isPaused());
    step(10);
    EXPECT_THAT(subscriber.calls, IsEmpty());

    manager.setPaused(false);
    EXPECT_FALSE(manager.isPaused());
    EXPECT_DOUBLE_EQ(untilNextPoll(), 3.0);
    step(3);
    EXPECT_THAT(subscriber.calls, SizeIs(1));
}

TEST_F(ZEFFileManagerSettingsTest, StartsNoTimerForASubscriptionWhilePaused)
{
    manager.setPaused(true);
    subscribe(newSubscriber());
    EXPECT_EQ(untilNextPoll(), never);

    manager.unPause();
    EXPECT_DOUBLE_EQ(untilNextPoll(), 3.0);
}

TEST_F(ZEFFileManagerSettingsTest, HasShortNamesForPausing)
{
    subscribe(newSubscriber());

    manager.pause();
    EXPECT_TRUE(manager.isPaused());
    EXPECT_EQ(untilNextPoll(), never);

    manager.unPause();
    EXPECT_FALSE(manager.isPaused());
    EXPECT_DOUBLE_EQ(untilNextPoll(), 3.0);
}

TEST_F(ZEFFileManagerSettingsTest, StartsItsTimerAfterAPauseEvenWhenNothingIsKept)
{
    manager.setPaused(false);

    EXPECT_DOUBLE_EQ(untilNextPoll(), 3.0);
    step(3);
    EXPECT_DOUBLE_EQ(untilNextPoll(), 3.0);
}

TEST_F(ZEFFileManagerSettingsTest, KeepsItsTimerWhenItIsNotPausedAnyway)
{
    subscribe(newSubscriber());
    step(1);

    manager.setPaused(false);

    EXPECT_DOUBLE_EQ(untilNextPoll(), 2.0);
}

TEST_F(ZEFFileManagerSettingsTest, MayBePausedTwice)
{
    manager.setPaused(true);
    manager.setPaused(true);
    manager.setPaused(false);

    EXPECT_DOUBLE_EQ(untilNextPoll(), 3.0);
}

// --- The timer itself

TEST_F(ZEFFileManagerSettingsTest, MakesOneTimerOnly)
{
    manager.ZEF_makeTimer();
    step(1);
    manager.ZEF_makeTimer();
    EXPECT_DOUBLE_EQ(untilNextPoll(), 2.0);

    manager.ZEF_killTimer();
    EXPECT_EQ(untilNextPoll(), never);
    manager.ZEF_killTimer();
}

TEST_F(ZEFFileManagerSettingsTest, KeepsItsTimerForASecondSubscription)
{
    subscribe(newSubscriber());
    step(1);

    subscribe(newSubscriber(), "elsewhere");

    EXPECT_DOUBLE_EQ(untilNextPoll(), 2.0);
}

TEST_F(ZEFFileManagerSettingsTest, PollsOnTheLoopOfTheThreadThatSubscribesFirst)
{
    zef::RunLoop first(clock);
    zef::RunLoop::replaceCurrent(&first);
    subscribe(newSubscriber());
    zef::RunLoop::replaceCurrent(&loop);
    subscribe(newSubscriber(), "elsewhere");

    EXPECT_DOUBLE_EQ(first.secondsUntilNextTimer(), 3.0);
    EXPECT_EQ(untilNextPoll(), never);

    manager.setPollingInterval(5);
    EXPECT_EQ(first.secondsUntilNextTimer(), never);
    EXPECT_DOUBLE_EQ(untilNextPoll(), 5.0);
}

TEST_F(ZEFFileManagerSettingsTest, PollsInTheDefaultModeOfTheRunLoopOnly)
{
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    folder.write("watched/a");

    for (const auto mode : { zef::RunLoopMode::modal, zef::RunLoopMode::eventTracking }) {
        loop.pushMode(mode);
        step(3);
        EXPECT_THAT(subscriber.calls, IsEmpty());
        loop.popMode();
    }

    step(0);
    EXPECT_THAT(subscriber.calls, SizeIs(1));
}

TEST_F(ZEFFileManagerSettingsTest, DrainsLoadsInAModeInWhichItDoesNotPoll)
{
    manager.setAsynchronous(true);
    auto& subscriber = newSubscriber();
    auto* subscription = subscribe(subscriber);
    manager.operationQueue()->waitUntilAllOperationsAreFinished();
    loop.pushMode(zef::RunLoopMode::modal);

    step(0.1);
    EXPECT_FALSE(subscription->isLoading());
    EXPECT_THAT(subscriber.calls, SizeIs(1));

    folder.write("watched/a");
    step(10);
    EXPECT_THAT(subscriber.calls, SizeIs(1));
    loop.popMode();
}

} // namespace

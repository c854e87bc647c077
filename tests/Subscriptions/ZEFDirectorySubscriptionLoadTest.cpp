// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/LockHolder.h"
#include "tests/support/SubscriptionLoadFixture.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using Access = ZEFDirectorySubscriptionTestAccess;

/// The beginning of a background load, and how its results are taken in.
class ZEFDirectorySubscriptionLoadTest : public SubscriptionLoadFixture { };

// --- The beginning

TEST_F(ZEFDirectorySubscriptionLoadTest, ReturnsAtOnceWithNothingKnown)
{
    writeFiles(3);
    begin();

    EXPECT_TRUE(subscription->isLoading());
    EXPECT_TRUE(subscription->isValid());
    EXPECT_TRUE(subscription->files()->isEmpty());
    EXPECT_THAT(subscriber.calls, IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionLoadTest, RunsOnTheFileManagersOperationQueueWithHighPriority)
{
    begin();
    auto* operation = Access::loadOperation(*subscription);

    EXPECT_EQ(ZEFFileManager::defaultFileManager()->operationQueue()->operationCount(), 1u);
    EXPECT_TRUE(operation->isExecuting());
    EXPECT_EQ(operation->queuePriority(), zef::QueuePriority::high);
    EXPECT_EQ(operation->loadingDirectory(), item("watched").get());
    EXPECT_EQ(operation->fileFilter(), nullptr);
}

TEST_F(ZEFDirectorySubscriptionLoadTest, IsDrainedAfterATenthOfASecondAndThenEveryHalf)
{
    begin();

    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.1);
    step(0.1);
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.5);
    step(0.5);
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.5);
}

TEST_F(ZEFDirectorySubscriptionLoadTest, IsDrainedInEveryModeOfTheRunLoop)
{
    writeFiles(120);
    begin();

    loadBatch();
    loop.pushMode(zef::RunLoopMode::modal);
    step(0.1);
    EXPECT_THAT(sizes(), ElementsAre(40u));

    loadBatch();
    loop.pushMode(zef::RunLoopMode::eventTracking);
    step(0.5);
    EXPECT_THAT(sizes(), ElementsAre(40u, 40u));
    loop.popMode();
    loop.popMode();
}

TEST_F(ZEFDirectorySubscriptionLoadTest, ItsTimerDoesNotKeepTheSubscriptionAlive)
{
    begin();

    EXPECT_EQ(subscription->retainCount(), 1u);
}

TEST_F(ZEFDirectorySubscriptionLoadTest, AllowsNoCheckMeanwhile)
{
    begin();
    folder.write("watched/a");
    auto changes = zef::makeRef<ZEFChangeArray>();

    subscription->checkDirectory();
    subscription->checkDirectory(changes);

    EXPECT_FALSE(changes);
    EXPECT_THAT(subscriber.calls, IsEmpty());
}

// --- Taking in

TEST_F(ZEFDirectorySubscriptionLoadTest, DeliversEachBatchAsAppearedAndThenOneMoreNotification)
{
    writeFiles(100);
    begin();

    loadBatch();
    step(0.1);
    EXPECT_THAT(sizes(), ElementsAre(40u));
    EXPECT_EQ(subscription->files()->count(), 40u);

    loadBatch();
    step(0.5);
    EXPECT_THAT(sizes(), ElementsAre(40u, 40u));

    finishLoad();
    EXPECT_TRUE(subscription->isLoading());
    step(0.5);
    EXPECT_THAT(sizes(), ElementsAre(40u, 40u, 20u, 0u));
    EXPECT_FALSE(subscription->isLoading());
    EXPECT_EQ(subscription->files()->count(), 100u);
    for (const auto& call : subscriber.calls)
        EXPECT_THAT(call.words, Each(StartsWith("appeared ")));
}

TEST_F(ZEFDirectorySubscriptionLoadTest, SendsNothingForAFiringThatFindsNothing)
{
    writeFiles(50);
    begin();

    step(0.1);
    EXPECT_THAT(subscriber.calls, IsEmpty());

    loadBatch();
    step(0.5);
    step(0.5);
    EXPECT_THAT(sizes(), ElementsAre(40u));
}

TEST_F(ZEFDirectorySubscriptionLoadTest, EndsWithAnEmptyNotificationForAnEmptyFolder)
{
    begin();
    finishLoad();
    step(0.1);

    EXPECT_THAT(subscriber.words(), ElementsAre(IsEmpty()));
    EXPECT_FALSE(subscription->isLoading());
}

TEST_F(ZEFDirectorySubscriptionLoadTest, TellsEachItemThatItAppearedBeforeTheSubscribers)
{
    folder.write("watched/a");
    begin();
    const ZEFChangeRecord* record = nullptr;
    ReportingItem::hook = [&](auto&, const auto& sent) {
        EXPECT_THAT(subscriber.calls, IsEmpty());
        record = &sent;
    };
    finishLoad();
    step(0.1);

    ASSERT_THAT(subscriber.calls, SizeIs(2));
    EXPECT_EQ(subscriber.calls[0].changes->objectAtIndex(0), record);
    EXPECT_EQ(record->file(), item("watched/a").get());
}

TEST_F(ZEFDirectorySubscriptionLoadTest, DoesNotWatchSubfoldersByTheKernelQueue)
{
    folder.makeFolder("watched/sub");
    begin();
    finishLoad();
    step(0.1);

    EXPECT_FALSE(item("watched/sub")->usingKQueue());
    folder.write("watched/sub/x");
    EXPECT_THAT(check(*subscription), ElementsAre("updated sub"));
}

TEST_F(ZEFDirectorySubscriptionLoadTest, ReportsAnItemAsOftenAsItWasFound)
{
    folder.write("watched/a");
    folder.link("watched/a", "watched/b");
    begin();
    finishLoad();
    step(0.1);

    EXPECT_THAT(sizes(), ElementsAre(2u, 0u));
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionLoadTest, TellsItemsThatWereMadeElsewhereWhereTheyAreNow)
{
    writeFiles(40);
    for (const auto* name : { "a", "b" })
        folder.write(std::string("elsewhere/") + name);
    auto early = item("elsewhere/a");
    auto late = item("elsewhere/b");
    folder.rename("elsewhere/a", "watched/first");
    folder.rename("elsewhere/b", "watched/second");
    begin();
    loadBatch();
    subscriber.action = [&] {
        subscriber.action = nullptr;
        finishLoad();
    };

    step(0.1);

    EXPECT_EQ(early->url(), folder.url("watched/first"));
    EXPECT_EQ(late->url(), folder.url("watched/second"));
    for (const auto& call : subscriber.calls) {
        EXPECT_THAT(call.words, Not(Contains("appeared a")));
        EXPECT_THAT(call.words, Not(Contains("appeared b")));
    }
}

TEST_F(ZEFDirectorySubscriptionLoadTest, TakesInWhatCameAfterTheLockWasGivenBack)
{
    writeFiles(60);
    begin();
    loadBatch();
    subscriber.action = [&] {
        subscriber.action = nullptr;
        finishLoad();
    };

    step(0.1);

    EXPECT_THAT(sizes(), ElementsAre(40u, 20u, 0u));
    EXPECT_FALSE(subscription->isLoading());
}

TEST_F(ZEFDirectorySubscriptionLoadTest, SkipsAFiringWhileTheLoaderHasTheLock)
{
    writeFiles(3);
    begin();
    finishLoad();
    {
        const LockHolder holder(*Access::loadOperation(*subscription)->loadingArrayLock());
        step(0.1);
        step(0.4);
    }
    // Not even the end of the load was looked at.
    EXPECT_THAT(subscriber.calls, IsEmpty());
    EXPECT_TRUE(subscription->isLoading());

    step(0.1);
    EXPECT_THAT(sizes(), ElementsAre(3u, 0u));
    EXPECT_FALSE(subscription->isLoading());
}

TEST_F(ZEFDirectorySubscriptionLoadTest, HoldsNoLockWhileItCallsSubscribers)
{
    writeFiles(50);
    begin();
    loadBatch();
    // The loader can hand over the rest while the subscriber is busy.
    subscriber.action = [&] { finishLoad(); };

    step(0.1);

    EXPECT_EQ(subscription->files()->count(), 50u);
}

TEST_F(ZEFDirectorySubscriptionLoadTest, TheTimersCalloutDrains)
{
    writeFiles(50);
    begin();
    loadBatch();

    ZEFAsynchronousLoadingTimerCallback(Access::loadTimer(*subscription), subscription.get());

    EXPECT_THAT(sizes(), ElementsAre(40u));
}

TEST_F(ZEFDirectorySubscriptionLoadTest, DrainingDoesNothingWhenNoLoadRuns)
{
    auto idle = watch(&subscriber);

    idle->ZEF_checkAsyncLoadingQueue();

    EXPECT_THAT(subscriber.calls, IsEmpty());
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/SubscriptionLoadFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::Ref;
using Access = ZEFDirectorySubscriptionTestAccess;

/// A background load that doesn't come to its end: stopped, or left behind.
class ZEFDirectorySubscriptionLoadStopTest : public SubscriptionLoadFixture { };

// --- loadImmediately

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingImmediatelyDoesNothingWhenNoLoadRuns)
{
    auto idle = watch(&subscriber);
    folder.write("watched/a");
    const int opened = catalog.openCount;

    idle->loadImmediately();

    EXPECT_THAT(subscriber.calls, IsEmpty());
    EXPECT_EQ(catalog.openCount, opened);
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingImmediatelyReportsEverythingInOneNotification)
{
    writeFiles(100);
    begin();
    loadBatch();

    subscription->loadImmediately();

    EXPECT_THAT(sizes(), ElementsAre(100u));
    EXPECT_EQ(subscription->files()->count(), 100u);
    EXPECT_FALSE(subscription->isLoading());
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingImmediatelyReportsOnlyWhatIsNotKnownYet)
{
    writeFiles(100);
    begin();
    loadBatch();
    step(0.1);
    loadBatch();

    subscription->loadImmediately();

    EXPECT_THAT(sizes(), ElementsAre(40u, 60u));
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingAnEmptyFolderImmediatelyNotifiesOfNothing)
{
    begin();

    subscription->loadImmediately();

    EXPECT_THAT(subscriber.words(), ElementsAre(IsEmpty()));
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingImmediatelyNotifiesOnceWhenTheFolderIsGone)
{
    begin();
    folder.remove("watched");

    subscription->loadImmediately();

    EXPECT_THAT(subscriber.words(), ElementsAre(ElementsAre("removed watched")));
    finishLoad();
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingImmediatelyWatchesSubfoldersByTheKernelQueue)
{
    folder.makeFolder("watched/sub");
    begin();

    subscription->loadImmediately();

    EXPECT_TRUE(item("watched/sub")->usingKQueue());
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingImmediatelyCancelsTheLoadAndItsTimer)
{
    writeFiles(100);
    begin();
    const Ref<ZEFFileLoadOperation> operation = Access::loadOperation(*subscription);
    const Ref<zef::Timer> timer = Access::loadTimer(*subscription);
    loadBatch();

    subscription->loadImmediately();

    EXPECT_TRUE(operation->isCancelled());
    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_EQ(Access::loadOperation(*subscription), nullptr);
    finishLoad();
    EXPECT_EQ(operation->loadingArray()->count(), 40u);
    EXPECT_TRUE(operation->isFinished());
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadingImmediatelyTwiceNotifiesOnce)
{
    writeFiles(3);
    begin();

    subscription->loadImmediately();
    subscription->loadImmediately();

    EXPECT_THAT(sizes(), ElementsAre(3u));
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, ASubscriberOfTheNotificationMayAskAgain)
{
    writeFiles(3);
    begin();
    subscriber.action = [&] { subscription->loadImmediately(); };

    subscription->loadImmediately();

    EXPECT_THAT(sizes(), ElementsAre(3u));
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, LoadsInTimeWhatItsQueueNeverCameTo)
{
    ZEFFileManager::defaultFileManager()->operationQueue()->setSuspended(true);
    writeFiles(3);
    subscription = watchInBackground(&subscriber);
    step(0.1);
    EXPECT_THAT(subscriber.calls, IsEmpty());

    subscription->loadImmediately();

    EXPECT_THAT(sizes(), ElementsAre(3u));
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, DrainingAfterItWasStoppedDoesNothing)
{
    writeFiles(3);
    begin();
    subscription->loadImmediately();

    subscription->ZEF_checkAsyncLoadingQueue();
    step(0.5);

    EXPECT_THAT(sizes(), ElementsAre(3u));
}

// --- A subscription that dies first

TEST_F(ZEFDirectorySubscriptionLoadStopTest, ALoadOutlivesItsSubscriptionUncancelled)
{
    writeFiles(100);
    const int before = ReportingItem::liveCount;
    begin();
    auto* operation = Access::loadOperation(*subscription);
    loadBatch();

    subscription = nullptr;
    finishLoad();

    EXPECT_FALSE(operation->isCancelled());
    EXPECT_TRUE(operation->isFinished());
    EXPECT_EQ(operation->loadingArray()->count(), 100u);
    EXPECT_EQ(ReportingItem::liveCount, before + 101);
    EXPECT_EQ(operation->retainCount(), 1u);
    operation->release(); // which nobody does outside a test
    EXPECT_EQ(ReportingItem::liveCount, before);
}

TEST_F(ZEFDirectorySubscriptionLoadStopTest, ASubscriptionThatDiesStopsItsTimer)
{
    writeFiles(3);
    begin();
    auto* operation = Access::loadOperation(*subscription);
    const Ref<zef::Timer> timer = Access::loadTimer(*subscription);

    subscription = nullptr;
    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);

    finishLoad();
    step(0.1);
    EXPECT_THAT(subscriber.calls, IsEmpty());
    operation->release();
}

} // namespace

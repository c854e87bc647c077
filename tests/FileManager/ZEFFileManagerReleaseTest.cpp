// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tests/support/ManagerFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::Ref;
using Access = ZEFFileManagerTestAccess;

/// How a subscription is dropped some time after its last subscriber has left.
class ZEFFileManagerReleaseTest : public ManagerFixture {
protected:
    /// Lets the folder go, and the manager notice.
    void removeFolder()
    {
        folder.remove("watched");
        poll();
        subscriber.calls.clear();
    }

    RecordingSubscriber& subscriber = newSubscriber();
    ZEFDirectorySubscription* subscription = subscribe(subscriber);
};

// --- The folder is there: 30 seconds

TEST_F(ZEFFileManagerReleaseTest, KeepsTheSubscriptionOfAValidFolderForThirtySeconds)
{
    manager.unsubscribeForSubscription(&subscriber, subscription);

    step(29.999);
    EXPECT_TRUE(keeps(subscription));

    step(0.001);
    EXPECT_THAT(manager.subscriptions(), IsEmpty());
}

TEST_F(ZEFFileManagerReleaseTest, PollsTheSubscriptionThatWaits)
{
    folder.write("watched/a");
    const Ref<ZEFFileItem> file = item("watched/a");
    poll();
    manager.unsubscribe(&subscriber);
    folder.rename("watched/a", "watched/b");

    step(3);

    EXPECT_EQ(file->url(), folder.url("watched/b"));
    EXPECT_THAT(subscriber.calls, SizeIs(1));
}

TEST_F(ZEFFileManagerReleaseTest, GivesTheSameSubscriptionToASubscriberThatComesBack)
{
    manager.unsubscribe(&subscriber);
    step(20);

    EXPECT_EQ(subscribe(newSubscriber()), subscription);

    step(10);
    EXPECT_TRUE(keeps(subscription));
    EXPECT_EQ(manager.subscriptionForFile(item("watched").get()), subscription);
    step(60);
    EXPECT_TRUE(keeps(subscription));
}

TEST_F(ZEFFileManagerReleaseTest, KeepsTheFiredTimerOfASubscriptionThatIsKeptAgain)
{
    manager.unsubscribe(&subscriber);
    subscribe(newSubscriber());
    step(30);

    EXPECT_EQ(Access::releaseTimerCount(), 1u);
    EXPECT_EQ(subscription->retainCount(), 2u);
}

TEST_F(ZEFFileManagerReleaseTest, DropsTheSubscriptionByTheTimerOfAnEarlierLeaving)
{
    manager.unsubscribe(&subscriber);
    step(10);
    subscribe(subscriber);
    step(10);
    manager.unsubscribe(&subscriber);
    ASSERT_EQ(Access::releaseTimerCount(), 2u);

    step(10);

    EXPECT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(Access::releaseTimerCount(), 1u);
    step(20);
    EXPECT_EQ(Access::releaseTimerCount(), 0u);
}

TEST_F(ZEFFileManagerReleaseTest, AddsATimerEachTimeSomebodyLeavesASubscriptionThatHasNobody)
{
    manager.unsubscribe(&subscriber);
    manager.unsubscribe(&subscriber);
    manager.unsubscribe(&newSubscriber());

    EXPECT_EQ(Access::releaseTimerCount(), 3u);
    step(30);
    EXPECT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(Access::releaseTimerCount(), 0u);
}

TEST_F(ZEFFileManagerReleaseTest, StartsNoTimerWhileOthersRemain)
{
    subscribe(newSubscriber());

    manager.unsubscribeForSubscription(&subscriber, subscription);

    EXPECT_EQ(Access::releaseTimerCount(), 0u);
}

TEST_F(ZEFFileManagerReleaseTest, ATimerKeepsItsSubscriptionAliveUntilItHasFired)
{
    const int before = ReportingItem::liveCount;
    manager.unsubscribe(&subscriber);
    step(10);
    manager.unsubscribe(&subscriber);
    step(20);
    ASSERT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(ReportingItem::liveCount, before);

    step(10);
    EXPECT_EQ(ReportingItem::liveCount, before - 1);
}

TEST_F(ZEFFileManagerReleaseTest, WaitsWhileTheRunLoopIsInAnotherMode)
{
    manager.unsubscribe(&subscriber);
    loop.pushMode(zef::RunLoopMode::modal);
    step(100);
    EXPECT_TRUE(keeps(subscription));
    loop.popMode();

    step(0);
    EXPECT_FALSE(keeps(subscription));
}

TEST_F(ZEFFileManagerReleaseTest, MakesANewSubscriptionAfterTheOldOneWasDropped)
{
    manager.unsubscribe(&subscriber);
    step(30);
    EXPECT_EQ(manager.subscriptionForFile(item("watched").get()), nullptr);

    auto* made = subscribe(subscriber);

    EXPECT_THAT(manager.subscriptions(), ElementsAre(made));
    EXPECT_EQ(made->numberOfSubscribers(), 1);
}

// --- The folder is gone: the next pass

TEST_F(ZEFFileManagerReleaseTest, DropsTheSubscriptionOfALostFolderInTheNextPass)
{
    removeFolder();
    manager.unsubscribe(&subscriber);
    EXPECT_TRUE(keeps(subscription));

    step(0);

    EXPECT_THAT(manager.subscriptions(), IsEmpty());
}

TEST_F(ZEFFileManagerReleaseTest, DropsASubscriptionThatHasSubscribersAgainWhenItIsNoLongerValid)
{
    manager.unsubscribe(&subscriber);
    subscription->subscribe(&subscriber);
    removeFolder();

    step(30);

    EXPECT_FALSE(keeps(subscription));
}

TEST_F(ZEFFileManagerReleaseTest, WaitsThirtySecondsForAFolderWhoseLossNobodyHasReported)
{
    folder.remove("watched");
    item("elsewhere");
    manager.unsubscribe(&subscriber);

    step(0);
    EXPECT_TRUE(keeps(subscription));
    step(30);
    EXPECT_FALSE(keeps(subscription));
}

TEST_F(ZEFFileManagerReleaseTest, LeavesTheEntryOfAFolderThatCameAfterwards)
{
    removeFolder();
    folder.makeFolder("watched");
    auto* made = subscribe(newSubscriber());

    manager.unsubscribeForSubscription(&subscriber, subscription);
    step(0);

    EXPECT_THAT(manager.subscriptions(), ElementsAre(made));
    EXPECT_EQ(manager.subscriptionForFile(item("watched").get()), made);
}

// --- The polling timer

TEST_F(ZEFFileManagerReleaseTest, StopsPollingWithTheLastSubscription)
{
    manager.unsubscribe(&subscriber);
    step(30);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);

    subscribe(subscriber);
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 3.0);
}

TEST_F(ZEFFileManagerReleaseTest, GoesOnPollingForOtherSubscriptions)
{
    auto& other = newSubscriber();
    subscribe(other, "elsewhere");
    manager.unsubscribe(&subscriber);
    step(30);
    folder.write("elsewhere/a");

    step(3);

    EXPECT_THAT(other.words(), ElementsAre(ElementsAre("updated elsewhere", "appeared a")));
}

TEST_F(ZEFFileManagerReleaseTest, DoesNotPollAgainAfterAReleaseWhilePaused)
{
    manager.unsubscribe(&subscriber);
    manager.pause();
    step(30);
    EXPECT_THAT(manager.subscriptions(), IsEmpty());

    subscribe(subscriber);

    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

// --- Subscriptions of others

TEST_F(ZEFFileManagerReleaseTest, LetsGoOfASubscriptionThatItDoesNotKeep)
{
    auto foreign = ZEFDirectorySubscription::initForSubscriber(
        &subscriber, item("elsewhere").get());

    manager.unsubscribeForSubscription(&subscriber, foreign.get());
    EXPECT_EQ(foreign->numberOfSubscribers(), 0);
    EXPECT_EQ(foreign->retainCount(), 2u);

    step(30);
    EXPECT_EQ(foreign->retainCount(), 1u);
    EXPECT_TRUE(keeps(subscription));
}

TEST_F(ZEFFileManagerReleaseTest, KeepsTheEntryOfAFolderWhenAForeignSubscriptionOfItIsReleased)
{
    auto foreign = ZEFDirectorySubscription::initForSubscriber(nullptr, item("watched").get());

    manager.unsubscribeForSubscription(&subscriber, foreign.get());
    step(30);

    EXPECT_EQ(manager.subscriptionForFile(item("watched").get()), subscription);
}

} // namespace

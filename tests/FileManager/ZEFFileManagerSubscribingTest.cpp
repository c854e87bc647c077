// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tests/support/FakeCatalog.h"
#include "tests/support/FakeChangeNotifier.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeLocator.h"
#include "tests/support/ManagerFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::Ref;

/// One subscription for each folder.
class ZEFFileManagerSubscribingTest : public ManagerFixture {
protected:
    RecordingSubscriber& subscriber = newSubscriber();
    RecordingSubscriber& other = newSubscriber();
};

// --- Subscribing

TEST_F(ZEFFileManagerSubscribingTest, SharesOneSubscriptionAmongTheSubscribersOfAFolder)
{
    auto* first = subscribe(subscriber);
    auto* second = subscribe(other);

    ASSERT_TRUE(first);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first->numberOfSubscribers(), 2);
    EXPECT_THAT(manager.subscriptions(), ElementsAre(first));
}

TEST_F(ZEFFileManagerSubscribingTest, FindsTheSameSubscriptionByPathURLAndFile)
{
    auto directory = item("watched");

    auto* byFile = manager.subscribeForFile(&subscriber, directory.get());

    EXPECT_EQ(manager.subscribeForPath(&subscriber, folder.path("watched")), byFile);
    EXPECT_EQ(manager.subscribeForURL(&subscriber, folder.folderUrl("watched")), byFile);
    EXPECT_EQ(manager.subscribeForURL(&subscriber, folder.url("watched")), byFile);
    EXPECT_EQ(byFile->numberOfSubscribers(), 1);
    EXPECT_EQ(byFile->directoryFile(), directory.get());
}

TEST_F(ZEFFileManagerSubscribingTest, KeepsTheSubscriptionsInTheOrderOfTheirCreation)
{
    makeFolders({ "a", "b", "c" });
    auto* c = subscribe(subscriber, "c");
    auto* a = subscribe(subscriber, "a");
    auto* b = subscribe(subscriber, "b");
    subscribe(other, "c");

    EXPECT_THAT(manager.subscriptions(), ElementsAre(c, a, b));
}

TEST_F(ZEFFileManagerSubscribingTest, OwnsTheSubscriptionByItsTwoContainers)
{
    auto* subscription = subscribe(subscriber);

    EXPECT_EQ(subscription->retainCount(), 2u);
}

TEST_F(ZEFFileManagerSubscribingTest, KeepsASubscriptionWithoutASubscriber)
{
    auto* subscription = manager.subscribeForPath(nullptr, folder.path("watched"));

    ASSERT_TRUE(subscription);
    EXPECT_EQ(subscription->numberOfSubscribers(), 0);
    EXPECT_TRUE(keeps(subscription));
}

TEST_F(ZEFFileManagerSubscribingTest, SubscribesToNothingForNil)
{
    EXPECT_EQ(manager.subscribeForFile(&subscriber, nullptr), nullptr);
    EXPECT_EQ(manager.subscribeForURL(&subscriber, nullptr), nullptr);
    EXPECT_EQ(manager.subscribeForPath(&subscriber, ""), nullptr);

    EXPECT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFFileManagerSubscribingTest, SubscribesToNothingForAMissingFolderAndLogsNothing)
{
    EXPECT_EQ(subscribe(subscriber, "missing"), nullptr);

    EXPECT_THAT(manager.subscriptions(), IsEmpty());
}

TEST_F(ZEFFileManagerSubscribingTest, SubscribesToNothingForAFile)
{
    folder.write("file");

    EXPECT_EQ(subscribe(subscriber, "file"), nullptr);

    EXPECT_THAT(log.lines(), SizeIs(1));
    log.clear();
    EXPECT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFFileManagerSubscribingTest, SharesNoSubscriptionBetweenFolders)
{
    EXPECT_NE(subscribe(subscriber), subscribe(subscriber, "elsewhere"));
}

// --- Finding

TEST_F(ZEFFileManagerSubscribingTest, FindsTheSubscriptionOfAFile)
{
    auto* subscription = subscribe(subscriber);

    EXPECT_EQ(manager.subscriptionForFile(item("watched").get()), subscription);
    EXPECT_EQ(manager.subscriptionForFile(item("elsewhere").get()), nullptr);
    EXPECT_EQ(manager.subscriptionForFile(nullptr), nullptr);
}

TEST_F(ZEFFileManagerSubscribingTest, FindsTheSubscriptionOfAnItemThatEqualsTheFolders)
{
    auto* subscription = subscribe(subscriber);
    const auto equal = zef::makeRef<ReportingItem>(
        folder.folderUrl("watched"), nullptr, nullptr, nullptr);

    EXPECT_EQ(manager.subscriptionForFile(equal.get()), subscription);
}

TEST_F(ZEFFileManagerSubscribingTest, FindsTheSubscriptionOfAFolderThatWasRenamed)
{
    auto* subscription = subscribe(subscriber);
    folder.rename("watched", "new");

    EXPECT_EQ(subscribe(other, "new"), subscription);
}

// --- A folder that is gone

TEST_F(ZEFFileManagerSubscribingTest, MakesANewSubscriptionForANewFolderInTheOldOnesPlace)
{
    auto* old = subscribe(subscriber);
    folder.remove("watched");
    poll();
    ASSERT_FALSE(old->isValid());
    folder.makeFolder("watched");

    auto* made = subscribe(other);

    EXPECT_NE(made, old);
    EXPECT_THAT(manager.subscriptions(), ElementsAre(old, made));
    EXPECT_EQ(old->numberOfSubscribers(), 1);
    EXPECT_EQ(manager.subscriptionForFile(item("watched").get()), made);
}

TEST_F(ZEFFileManagerSubscribingTest, PollsAnInvalidSubscriptionWithoutAWord)
{
    subscribe(subscriber);
    folder.remove("watched");
    poll();
    folder.makeFolder("watched");
    folder.write("watched/a");

    poll();

    EXPECT_THAT(subscriber.words(), ElementsAre(ElementsAre("removed watched")));
}

TEST_F(ZEFFileManagerSubscribingTest, MakesNoSubscriptionForALostItem)
{
    auto* old = subscribe(subscriber);
    auto directory = item("watched");
    folder.remove("watched");
    poll();

    EXPECT_EQ(manager.subscribeForFile(&other, directory.get()), nullptr);

    EXPECT_THAT(log.lines(), SizeIs(1));
    log.clear();
    EXPECT_THAT(manager.subscriptions(), ElementsAre(old));
}

/// The same on a disk that is made up, so that a number surely comes back.
class ZEFFileManagerReusedNumberTest : public ManagerFixture {
protected:
    ZEFFileManagerReusedNumberTest()
    {
        zef::ChangeNotifier::replaceShared(&notifier);
        makeFolder();
    }

    ~ZEFFileManagerReusedNumberTest() override
    {
        ZEFFileManagerTestAccess::forgetInstance();
        zef::ChangeNotifier::replaceShared(nullptr);
    }

    void makeFolder()
    {
        const auto stat = files.addFolder("/watched");
        catalog.add(url, stat);
        locator.setAnswer(nullptr);
    }

    zef::FileURL url = zef::FileURL::fromPath("/watched", zef::URLKind::folder);
    FakeFileSystem files;
    FakeCatalog catalog;
    FakeLocator locator;
    FakeChangeNotifier notifier;
};

TEST_F(ZEFFileManagerReusedNumberTest, AFolderWithTheNumberOfADeletedOneGetsItsOwnSubscription)
{
    auto& subscriber = newSubscriber();
    auto* old = manager.subscribeForURL(&subscriber, url);
    ASSERT_TRUE(old);
    const auto number = old->directoryFile()->fileiNode();
    files.remove("/watched");
    catalog.remove(url);
    files.setNextInode(number);
    makeFolder();

    auto* made = manager.subscribeForURL(&subscriber, url);

    EXPECT_NE(made, old);
    EXPECT_EQ(made->directoryFile()->fileiNode(), number);
    EXPECT_NE(made->directoryFile(), old->directoryFile());
    EXPECT_EQ(log.count("Error while getting file object"), 1u);
    log.clear();

    poll();
    EXPECT_FALSE(old->isValid());
    EXPECT_TRUE(made->isValid());
    EXPECT_EQ(manager.subscribeForURL(&subscriber, url), made);
}

// --- Unsubscribing

TEST_F(ZEFFileManagerSubscribingTest, UnsubscribesInEveryWay)
{
    auto directory = item("watched");
    auto* subscription = subscribe(subscriber);
    const auto resubscribe = [&] {
        EXPECT_EQ(subscription->numberOfSubscribers(), 0);
        subscribe(subscriber);
    };

    manager.unsubscribeForFile(&subscriber, directory.get());
    resubscribe();
    manager.unsubscribeForPath(&subscriber, folder.path("watched"));
    resubscribe();
    manager.unsubscribeForURL(&subscriber, folder.folderUrl("watched"));
    resubscribe();
    manager.unsubscribeForSubscription(&subscriber, subscription);
    resubscribe();
    manager.unsubscribe(&subscriber);

    EXPECT_EQ(subscription->numberOfSubscribers(), 0);
    EXPECT_EQ(ZEFFileManagerTestAccess::releaseTimerCount(), 5u);
}

TEST_F(ZEFFileManagerSubscribingTest, UnsubscribesFromEverySubscriptionAtOnce)
{
    auto* first = subscribe(subscriber);
    auto* second = subscribe(subscriber, "elsewhere");
    subscribe(other, "elsewhere");

    manager.unsubscribe(&subscriber);

    EXPECT_EQ(first->numberOfSubscribers(), 0);
    EXPECT_EQ(second->numberOfSubscribers(), 1);
    EXPECT_EQ(ZEFFileManagerTestAccess::releaseTimerCount(), 1u);
}

TEST_F(ZEFFileManagerSubscribingTest, UnsubscribesFromNothingForWhatIsNotWatched)
{
    auto* subscription = subscribe(subscriber);

    manager.unsubscribeForFile(&subscriber, nullptr);
    manager.unsubscribeForFile(&subscriber, item("elsewhere").get());
    manager.unsubscribeForPath(&subscriber, folder.path("missing"));
    manager.unsubscribeForURL(&subscriber, nullptr);
    manager.unsubscribeForSubscription(&subscriber, nullptr);

    EXPECT_EQ(subscription->numberOfSubscribers(), 1);
    EXPECT_EQ(ZEFFileManagerTestAccess::releaseTimerCount(), 0u);
}

TEST_F(ZEFFileManagerSubscribingTest, LetsNobodyGoWhoIsNotASubscriber)
{
    auto* subscription = subscribe(subscriber);

    manager.unsubscribeForSubscription(&other, subscription);
    manager.unsubscribeForSubscription(nullptr, subscription);
    manager.unsubscribe(&other);

    EXPECT_EQ(subscription->numberOfSubscribers(), 1);
    EXPECT_EQ(ZEFFileManagerTestAccess::releaseTimerCount(), 0u);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/SubscriptionLoadFixture.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using zef::Ref;
using Access = ZEFDirectorySubscriptionTestAccess;

/// The end of a background load, and what callbacks may do meanwhile.
class ZEFDirectorySubscriptionLoadEndTest : public SubscriptionLoadFixture { };

// --- The end

TEST_F(ZEFDirectorySubscriptionLoadEndTest, LeavesNoTimerAndNoOperation)
{
    writeFiles(3);
    begin();
    const Ref<zef::Timer> timer = Access::loadTimer(*subscription);
    finishLoad();
    step(0.1);

    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(Access::loadOperation(*subscription), nullptr);
    EXPECT_EQ(Access::loadTimer(*subscription), nullptr);
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ReportsAFileMadeDuringTheLoadInItsLastNotification)
{
    writeFiles(3);
    begin();
    gate.letOneThrough();
    waitForLoads();
    folder.write("watched/late");
    gate.open();
    step(0.1);

    EXPECT_THAT(subscriber.calls.back().words, ElementsAre("updated watched", "appeared late"));
    EXPECT_EQ(subscription->files()->count(), 4u);
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ReportsAFileDeletedDuringTheLoadInItsLastNotification)
{
    writeFiles(2);
    begin();
    gate.letOneThrough();
    waitForLoads();
    folder.remove("watched/000");
    gate.open();
    step(0.1);

    EXPECT_THAT(subscriber.words(),
        ElementsAre(UnorderedElementsAre("appeared 000", "appeared 001"),
            ElementsAre("updated watched", "removed 000")));
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ReportsAFolderDeletedDuringTheLoadInItsLastNotification)
{
    folder.write("watched/a");
    begin();
    gate.letOneThrough();
    waitForLoads();
    folder.remove("watched");
    gate.open();
    step(0.1);

    EXPECT_THAT(
        subscriber.words(), ElementsAre(ElementsAre("appeared a"), ElementsAre("removed watched")));
    EXPECT_FALSE(subscription->isLoading());
    EXPECT_FALSE(subscription->isValid());
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, EndsWithAFullCheckThatListsTheFolder)
{
    writeFiles(3);
    begin();
    finishLoad();
    const int opened = catalog.openCount;
    step(0.1);

    EXPECT_EQ(catalog.openCount, opened + 1);
    // All were asked, and so are observed.
    const auto files = subscription->files();
    for (const auto& file : *files)
        EXPECT_TRUE(file->removeFileObserver(subscription.get()));
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ChecksAreQuickAgainAfterwards)
{
    writeFiles(3);
    begin();
    finishLoad();
    step(0.1);
    const int opened = catalog.openCount;

    EXPECT_THAT(check(*subscription), IsEmpty());

    EXPECT_EQ(catalog.openCount, opened);
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, EndsEvenWhenTheFolderCantBeListed)
{
    writeFiles(3);
    catalog.openResult.store(zef::FileError::io);
    subscription = watchInBackground(&subscriber);
    waitForLoads();
    EXPECT_THAT(log.lines(), SizeIs(1));
    log.clear();
    catalog.openResult.store(zef::FileError::none);
    step(0.1);

    EXPECT_THAT(sizes(), ElementsAre(3u));
    EXPECT_FALSE(subscription->isLoading());
}

// --- Callbacks during the drain

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ASubscriberMayEndTheLoad)
{
    writeFiles(100);
    begin();
    loadBatch();
    subscriber.action = [&] {
        gate.open();
        subscription->loadImmediately();
    };

    step(0.1);

    EXPECT_THAT(sizes(), ElementsAre(40u, 60u));
    EXPECT_FALSE(subscription->isLoading());
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ASubscriberMayEndALoadThatHasFinished)
{
    writeFiles(100);
    begin();
    finishLoad();
    subscriber.action = [&] { subscription->loadImmediately(); };

    step(0.1);

    EXPECT_THAT(sizes(), ElementsAre(100u, 0u));
    EXPECT_FALSE(subscription->isLoading());
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ASubscriberMayEndALoadThatHasFinishedMeanwhile)
{
    writeFiles(60);
    begin();
    loadBatch();
    int calls = 0;
    subscriber.action = [&] {
        if (++calls == 1)
            finishLoad();
        else
            subscription->loadImmediately();
    };

    step(0.1);

    EXPECT_THAT(sizes(), ElementsAre(40u, 20u, 0u));
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, AnItemsHookMayEndTheLoad)
{
    writeFiles(100);
    begin();
    loadBatch();
    gate.open();
    ReportingItem::hook = [&](auto&, auto&) { subscription->loadImmediately(); };

    step(0.1);

    EXPECT_FALSE(subscription->isLoading());
    EXPECT_EQ(subscription->files()->count(), 100u);
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, ASubscriberMayLetGoOfTheSubscription)
{
    writeFiles(100);
    begin();
    loadBatch();
    Ref<ZEFFileLoadOperation> operation = Access::loadOperation(*subscription);
    subscriber.action = [&] { subscription = nullptr; };

    step(0.1);

    EXPECT_THAT(sizes(), ElementsAre(40u));
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    finishLoad();
    operation->release(); // which outlives its subscription on purpose
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, AnExceptionDuringTheDrainLosesNothing)
{
    writeFiles(60);
    begin();
    loadBatch();
    ReportingItem::hook = [&](auto&, auto&) {
        ReportingItem::hook = nullptr;
        throw std::runtime_error("hook");
    };

    EXPECT_THROW(step(0.1), std::runtime_error);
    finishLoad();
    step(0.5);

    EXPECT_THAT(sizes(), ElementsAre(40u, 20u, 0u));
}

TEST_F(ZEFDirectorySubscriptionLoadEndTest, AHookMayCheckAgainInTheCheckThatEndsTheLoad)
{
    writeFiles(40);
    begin();
    finishLoad();
    int events = 0;
    Words inner;
    // What the items taken in have come to when the check looks at them.
    subscriber.action = [&] {
        subscriber.action = nullptr;
        const auto files = subscription->files();
        for (const auto& file : *files) {
            const auto name = nameOf(*file);
            folder.rename("watched/" + name, (name < "030" ? "elsewhere/" : "watched/x") + name);
        }
        ReportingItem::hook = [&](auto&, auto&) {
            if (++events == 2)
                inner = check(*subscription);
        };
    };

    step(0.1);

    ASSERT_THAT(subscriber.calls, SizeIs(2));
    std::set<std::string> found(inner.begin(), inner.end());
    found.insert(subscriber.calls[1].words.begin(), subscriber.calls[1].words.end());
    const auto isMove = [](const std::string& word) { return !word.starts_with("updated "); };
    EXPECT_EQ(std::count_if(found.begin(), found.end(), isMove), 40);
    EXPECT_EQ(subscription->files()->count(), 10u);
}

} // namespace

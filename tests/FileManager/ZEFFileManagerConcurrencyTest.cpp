// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/ManagerFixture.h"
#include "tests/support/ZEFDirectorySubscriptionTestAccess.h"

#include <atomic>
#include <set>

namespace {

using testing::SizeIs;
using zef::Ref;
using Access = ZEFDirectorySubscriptionTestAccess;

/// Loads on many threads while the test's own polls.
class ZEFFileManagerConcurrencyTest : public ManagerFixture {
protected:
    static std::string nameOfFolder(int number) { return "folder" + std::to_string(number); }

    /// Begins to load folders of this many files each.
    void loadFolders(int count, std::size_t filesEach)
    {
        manager.setAsynchronous(true);
        for (int number = 0; number < count; ++number) {
            folder.makeFolder(nameOfFolder(number));
            writeFiles(filesEach, nameOfFolder(number));
        }
        for (int number = 0; number < count; ++number)
            subscriptions.push_back(subscribe(subscriber, nameOfFolder(number)));
    }

    bool isAnyLoading() const
    {
        return std::any_of(subscriptions.begin(), subscriptions.end(),
            [](const auto* subscription) { return subscription->isLoading(); });
    }

    /// Lets time pass, and polls with it, until every load has ended.
    void stepUntilLoaded()
    {
        while (isAnyLoading())
            step(0.5);
    }

    RecordingSubscriber& subscriber = newSubscriber();
    std::vector<ZEFDirectorySubscription*> subscriptions;
};

TEST_F(ZEFFileManagerConcurrencyTest, LoadsManyFoldersWhileItPolls)
{
    loadFolders(8, 150);

    stepUntilLoaded();

    for (const auto* subscription : subscriptions)
        EXPECT_EQ(subscription->files()->count(), 150u);
    std::set<const ZEFFileItem*> appeared;
    for (const auto& call : subscriber.calls) {
        for (const auto& record : *call.changes) {
            EXPECT_EQ(record->event(), ZEFFileEvent::appeared);
            EXPECT_TRUE(appeared.insert(record->file()).second);
        }
    }
    EXPECT_THAT(appeared, SizeIs(8 * 150));
}

TEST_F(ZEFFileManagerConcurrencyTest, RunsAtMostSixtyFourLoadsAtOnceAndAllInTheEnd)
{
    std::atomic<int> readers{ 0 };
    std::atomic<int> most{ 0 };
    catalog.beforeBatch = [&] {
        const int now = ++readers;
        for (int before = most; before < now && !most.compare_exchange_weak(before, now);) { }
        gate.pass();
        --readers;
    };
    loadFolders(70, 1);
    for (int reader = 0; reader < 64; ++reader)
        gate.awaitArrival();
    EXPECT_EQ(manager.operationQueue()->operationCount(), 70u);

    gate.open();
    manager.operationQueue()->waitUntilAllOperationsAreFinished();
    EXPECT_EQ(most, 64);

    stepUntilLoaded();
    for (const auto* subscription : subscriptions)
        EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFFileManagerConcurrencyTest, LoadsSubscriptionsBeforeAHostsOwnWork)
{
    manager.setAsynchronous(true);
    auto* queue = manager.operationQueue();
    queue->setSuspended(true);
    auto ordinary = zef::makeRef<ZEFFileLoadOperation>();
    ordinary->setLoadingDirectory(item("elsewhere"));
    queue->setMaxConcurrentOperationCount(1);
    queue->addOperation(ordinary);
    holdReaders();
    auto* subscription = subscribe(subscriber);

    queue->setSuspended(false);
    gate.awaitArrival();

    EXPECT_TRUE(Access::loadOperation(*subscription)->isExecuting());
    EXPECT_FALSE(ordinary->isExecuting());
    gate.open();
    queue->waitUntilAllOperationsAreFinished();
    step(0.1);
}

TEST_F(ZEFFileManagerConcurrencyTest, StopsLoadsWhoseItemsDieOnTheirThreads)
{
    const int before = ReportingItem::liveCount;
    loadFolders(6, 120);
    for (auto* subscription : subscriptions)
        subscription->loadImmediately();
    manager.operationQueue()->waitUntilAllOperationsAreFinished();

    for (const auto* subscription : subscriptions)
        EXPECT_EQ(subscription->files()->count(), 120u);
    EXPECT_THAT(subscriber.calls, SizeIs(6));

    ZEFFileManagerTestAccess::forgetInstance();
    subscriber.calls.clear();
    EXPECT_EQ(ReportingItem::liveCount, before);
}

TEST_F(ZEFFileManagerConcurrencyTest, LoadsOneFolderManyTimesWhileItsItemsComeAndGo)
{
    writeFiles(100);
    auto* queue = manager.operationQueue();
    auto directory = item("watched");
    for (int round = 0; round < 20; ++round) {
        auto load = zef::makeRef<ZEFFileLoadOperation>();
        load->setLoadingDirectory(directory);
        queue->addOperation(std::move(load));
        for (int number = 0; number < 100; number += 10)
            EXPECT_TRUE(item("watched/" + std::to_string(1000 + number).substr(1)));
    }
    queue->waitUntilAllOperationsAreFinished();
}

TEST_F(ZEFFileManagerConcurrencyTest, LoadsFoldersThatAreRenamedMeanwhile)
{
    loadFolders(4, 150);
    for (int round = 0; isAnyLoading(); ++round) {
        for (int number = 0; number < 4; ++number) {
            const auto even = nameOfFolder(number);
            const auto odd = even + "x";
            folder.rename(round % 2 ? odd : even, round % 2 ? even : odd);
            subscriptions[static_cast<std::size_t>(number)]->directoryFile()->currentURL();
        }
        step(0.5);
    }
    poll();

    for (const auto* subscription : subscriptions)
        EXPECT_EQ(subscription->files()->count(), 150u);
    log.clear(); // a folder may have moved between being found and being opened
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/BlockOperation.h"
#include "tests/support/ManagerFixture.h"
#include "tests/support/ZEFDirectorySubscriptionTestAccess.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using testing::IsEmpty;
using zef::makeRef;
using zef::Ref;

/// The end of the file manager's service.
class ZEFFileManagerShutdownTest : public ManagerFixture {
protected:
    /// An operation that waits at the gate, and has come to it.
    Ref<BlockOperation> addBlocked(zef::OperationQueue* queue)
    {
        auto operation = makeRef<BlockOperation>([this] { gate.pass(); });
        queue->addOperation(operation);
        gate.awaitArrival();
        return operation;
    }

    /// Whether `condition` comes true before long; for operations, on their own threads.
    template <typename Condition> static bool comesTrue(Condition&& condition)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::yield();
        }
        return true;
    }

    Ref<zef::OperationQueue> operationQueue = manager.operationQueue();
    Ref<zef::OperationQueue> utilityQueue = manager.utilityQueue();
    RecordingSubscriber& subscriber = newSubscriber();
};

TEST_F(ZEFFileManagerShutdownTest, StopsPollingAndLetsGoOfEverySubscription)
{
    const int before = ReportingItem::liveCount;
    folder.write("watched/a");
    subscribe(subscriber);
    ASSERT_EQ(ReportingItem::liveCount, before + 2);

    manager.shutdown();

    EXPECT_EQ(ReportingItem::liveCount, before);
    EXPECT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    folder.write("watched/b");
    step(10);
    EXPECT_THAT(subscriber.calls, IsEmpty());
}

TEST_F(ZEFFileManagerShutdownTest, LetsGoOfSubscriptionsThatWaitForTheirRelease)
{
    const int before = ReportingItem::liveCount;
    subscribe(subscriber);
    manager.unsubscribe(&subscriber);
    manager.unsubscribe(&subscriber);

    manager.shutdown();

    EXPECT_EQ(ReportingItem::liveCount, before);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFFileManagerShutdownTest, LetsGoOfTheQueues)
{
    manager.shutdown();

    EXPECT_EQ(manager.operationQueue(), nullptr);
    EXPECT_EQ(manager.utilityQueue(), nullptr);
    EXPECT_EQ(operationQueue->retainCount(), 1u);
    EXPECT_EQ(utilityQueue->retainCount(), 1u);
    EXPECT_TRUE(operationQueue->isSuspended());
    EXPECT_TRUE(utilityQueue->isSuspended());
}

TEST_F(ZEFFileManagerShutdownTest, WaitsForWhatRuns)
{
    auto load = addBlocked(operationQueue.get());
    auto utility = addBlocked(utilityQueue.get());
    std::thread opener([this] {
        comesTrue([this] { return operationQueue->isSuspended(); });
        gate.open();
    });

    manager.shutdown();

    EXPECT_TRUE(load->isFinished());
    EXPECT_TRUE(utility->isFinished());
    opener.join();
}

TEST_F(ZEFFileManagerShutdownTest, NeverRunsWhatHasNotBegun)
{
    std::atomic<bool> ran{ false };
    for (const auto& queue : { operationQueue, utilityQueue }) {
        queue->setMaxConcurrentOperationCount(1);
        auto blocked = addBlocked(queue.get());
        queue->addOperation(makeRef<BlockOperation>([&] { ran = true; }));
    }
    std::thread opener([this] {
        comesTrue([this] { return operationQueue->isSuspended() && utilityQueue->isSuspended(); });
        gate.open();
    });

    manager.shutdown();

    opener.join();
    operationQueue = nullptr;
    utilityQueue = nullptr;
    EXPECT_FALSE(ran);
}

TEST_F(ZEFFileManagerShutdownTest, SuspendsBothQueuesBeforeItLetsGoOfSubscriptions)
{
    subscribe(subscriber);
    const int alive = ReportingItem::liveCount;
    std::atomic<bool> wasInOrder{ false };
    operationQueue->addOperation(makeRef<BlockOperation>([&] {
        gate.pass();
        comesTrue([&] { return ReportingItem::liveCount < alive; });
        wasInOrder = operationQueue->isSuspended() && utilityQueue->isSuspended();
    }));
    gate.awaitArrival();
    gate.open();

    manager.shutdown();

    EXPECT_TRUE(wasInOrder);
}

TEST_F(ZEFFileManagerShutdownTest, LetsGoOfSubscriptionsAndTheirTimersBeforeItWaits)
{
    subscribe(subscriber);
    subscribe(subscriber, "elsewhere");
    manager.unsubscribeForURL(&subscriber, folder.folderUrl("watched"));
    const int alive = ReportingItem::liveCount;
    std::atomic<bool> sawThemGo{ false };
    operationQueue->addOperation(makeRef<BlockOperation>([&] {
        gate.pass();
        // One was kept alive by its release timer too; the test keeps the other's item.
        sawThemGo = comesTrue([&] { return ReportingItem::liveCount == alive - 1; });
    }));
    gate.awaitArrival();
    gate.open();

    manager.shutdown();

    EXPECT_TRUE(sawThemGo);
}

TEST_F(ZEFFileManagerShutdownTest, LetsGoOfTheOperationQueueBeforeItWaitsForTheUtilityQueue)
{
    std::atomic<bool> sawItGo{ false };
    utilityQueue->addOperation(makeRef<BlockOperation>([&] {
        gate.pass();
        sawItGo = comesTrue([&] { return operationQueue->retainCount() == 1; });
    }));
    gate.awaitArrival();
    gate.open();

    manager.shutdown();

    EXPECT_TRUE(sawItGo);
}

TEST_F(ZEFFileManagerShutdownTest, WaitsForALoadThatRunsAndForgetsOneThatWaits)
{
    manager.setAsynchronous(true);
    operationQueue->setMaxConcurrentOperationCount(1);
    holdReaders();
    folder.write("watched/a");
    folder.write("elsewhere/b");
    using Access = ZEFDirectorySubscriptionTestAccess;
    Ref<ZEFFileLoadOperation> running = Access::loadOperation(*subscribe(subscriber));
    gate.awaitArrival();
    Ref<ZEFFileLoadOperation> waiting = Access::loadOperation(*subscribe(subscriber, "elsewhere"));
    std::thread opener([this] {
        comesTrue([this] { return operationQueue->isSuspended(); });
        gate.open();
    });

    manager.shutdown();

    opener.join();
    EXPECT_TRUE(running->isFinished());
    EXPECT_EQ(running->loadingArray()->count(), 1u);
    EXPECT_FALSE(waiting->isFinished());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);

    operationQueue = nullptr;
    EXPECT_TRUE(waiting->isCancelled());
    EXPECT_TRUE(waiting->loadingArray()->isEmpty());
    // Both outlive their subscriptions on purpose.
    running->release();
    waiting->release();
}

TEST_F(ZEFFileManagerShutdownTest, DoesNothingTheSecondTime)
{
    subscribe(subscriber);

    manager.shutdown();
    manager.shutdown();

    EXPECT_EQ(ZEFFileManager::defaultFileManager(), &manager);
    EXPECT_EQ(manager.retainCount(), 4294967295u);
}

TEST_F(ZEFFileManagerShutdownTest, IsHarmlessToUseAfterwards)
{
    auto directory = item("watched");
    auto kept = Ref(subscribe(subscriber));
    manager.shutdown();

    EXPECT_EQ(subscribe(subscriber), nullptr);
    EXPECT_EQ(manager.subscribeForFile(&subscriber, directory.get()), nullptr);
    EXPECT_EQ(manager.subscribeForPath(&subscriber, folder.path("watched")), nullptr);
    EXPECT_EQ(manager.subscriptionForFile(directory.get()), nullptr);
    manager.unsubscribeForFile(&subscriber, directory.get());
    manager.unsubscribeForPath(&subscriber, folder.path("watched"));
    manager.unsubscribeForSubscription(&subscriber, kept.get());
    manager.unsubscribe(&subscriber);
    manager.setPaused(true);
    manager.setPaused(false);
    manager.setPollingInterval(5);
    manager.checkFilesystem(nullptr);

    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_EQ(kept->numberOfSubscribers(), 0);
}

TEST_F(ZEFFileManagerShutdownTest, ASubscriptionMadeAfterwardsCanStillBeLoadedImmediately)
{
    folder.write("watched/a");
    manager.shutdown();
    auto subscription = ZEFDirectorySubscription::initForSubscriber(
        &subscriber, item("watched").get(), true);
    step(0.1);
    EXPECT_TRUE(subscription->isLoading());

    subscription->loadImmediately();

    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFFileManagerShutdownTest, MayHappenInASubscribersCallback)
{
    subscribe(subscriber);
    auto& other = newSubscriber();
    subscribe(other, "elsewhere");
    folder.write("watched/a");
    folder.write("elsewhere/a");
    subscriber.action = [&] { manager.shutdown(); };

    step(3);

    EXPECT_EQ(other.calls.size(), 1u);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

} // namespace

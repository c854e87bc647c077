// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/BlockOperation.h"
#include "tests/support/FakeThreadStarter.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/OperationQueueFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <latch>
#include <memory>
#include <mutex>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using zef::makeRef;
using zef::QueuePriority;
using zef::Ref;

class OperationQueueTest : public OperationQueueFixture { };

using OperationQueueDeathTest
    = OperationQueueTest; // GoogleTest runs these first, before there are threads

TEST_F(OperationQueueTest, RunsAnOperationOnAThreadOfItsOwn)
{
    std::thread::id runner;
    auto operation = add([&] { runner = std::this_thread::get_id(); });

    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(operation->isFinished());
    EXPECT_NE(runner, std::thread::id());
    EXPECT_NE(runner, std::this_thread::get_id());
}

TEST_F(OperationQueueTest, RunsEveryOperation)
{
    std::atomic<int> count{ 0 };
    queue->setMaxConcurrentOperationCount(8);

    for (int index = 0; index < 500; ++index)
        add([&] { ++count; });
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(count, 500);
    EXPECT_EQ(queue->operationCount(), 0u);
}

TEST_F(OperationQueueTest, NeverRunsMoreThanTheMaximumAtOnce)
{
    std::mutex mutex;
    int executing = 0;
    int most = 0;
    queue->setMaxConcurrentOperationCount(3);

    for (int index = 0; index < 200; ++index) {
        add([&] {
            {
                std::lock_guard guard(mutex);
                most = std::max(most, ++executing);
            }
            std::this_thread::yield();
            std::lock_guard guard(mutex);
            --executing;
        });
    }
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_GE(most, 1);
    EXPECT_LE(most, 3);
}

TEST_F(OperationQueueTest, RunsUpToTheMaximumAtOnce)
{
    queue->setMaxConcurrentOperationCount(4);
    std::latch allRunning(4);

    // Each waits for all the others: with fewer at once this would never end.
    for (int index = 0; index < 4; ++index)
        add([&] { allRunning.arrive_and_wait(); });
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(allRunning.try_wait());
}

TEST_F(OperationQueueTest, ARaisedMaximumLetsWhatWaitsBegin)
{
    queue->setMaxConcurrentOperationCount(1);
    addBlocker();
    std::binary_semaphore ran(0);
    add([&] { ran.release(); });
    EXPECT_EQ(queue->operationCount(), 2u);

    queue->setMaxConcurrentOperationCount(2);
    ran.acquire();

    gate.release();
}

TEST_F(OperationQueueTest, AMaximumOfNoneCountsAsOne)
{
    queue->setMaxConcurrentOperationCount(0);

    EXPECT_EQ(queue->maxConcurrentOperationCount(), 1u);
}

TEST_F(OperationQueueTest, PicksByPriorityAndThenByOrderOfAdding)
{
    queue->setMaxConcurrentOperationCount(1);
    addBlocker();
    addRecorder("low", QueuePriority::low);
    addRecorder("normal 1", QueuePriority::normal);
    addRecorder("very low", QueuePriority::veryLow);
    addRecorder("very high", QueuePriority::veryHigh);
    addRecorder("high", QueuePriority::high);
    addRecorder("normal 2", QueuePriority::normal);

    gate.release();
    queue->waitUntilAllOperationsAreFinished();

    const std::vector<std::string> expected{ "very high", "high", "normal 1", "normal 2", "low",
        "very low" };
    EXPECT_EQ(order, expected);
}

TEST_F(OperationQueueTest, KeepsTheOrderOfAddingAmongManyOfEachPriority)
{
    constexpr std::array priorities{ QueuePriority::veryLow, QueuePriority::veryHigh,
        QueuePriority::normal, QueuePriority::high, QueuePriority::low };
    using Entry = std::pair<int, std::size_t>;
    std::vector<Entry> begun;
    queue->setMaxConcurrentOperationCount(1);
    addBlocker();
    for (std::size_t number = 0; number < 500; ++number) {
        const auto priority = priorities[number % priorities.size()];
        add([&, priority, number] { begun.emplace_back(-static_cast<int>(priority), number); },
            priority);
    }

    gate.release();
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(begun.size(), 500u);
    EXPECT_TRUE(std::is_sorted(begun.begin(), begun.end()));
}

TEST_F(OperationQueueTest, APriorityThatIsSetWhileItWaitsCounts)
{
    queue->setMaxConcurrentOperationCount(1);
    addBlocker();
    addRecorder("first", QueuePriority::normal);
    auto second = addRecorder("second", QueuePriority::normal);

    second->setQueuePriority(QueuePriority::high);
    gate.release();
    queue->waitUntilAllOperationsAreFinished();

    const std::vector<std::string> expected{ "second", "first" };
    EXPECT_EQ(order, expected);
}

TEST_F(OperationQueueTest, ASuspendedQueueBeginsNothing)
{
    queue->setSuspended(true);
    auto operation = add([] {});

    // Returns at once, because nothing runs.
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(queue->isSuspended());
    EXPECT_FALSE(operation->isExecuting());
    EXPECT_FALSE(operation->isFinished());
    EXPECT_EQ(queue->operationCount(), 1u);
    queue->setSuspended(false);
}

TEST_F(OperationQueueTest, AResumedQueueGoesOn)
{
    queue->setSuspended(true);
    std::vector<Ref<BlockOperation>> operations;
    operations.reserve(10);
    for (int index = 0; index < 10; ++index)
        operations.push_back(add([] {}));

    queue->setSuspended(false);
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(std::all_of(operations.begin(), operations.end(),
        [](const auto& operation) { return operation->isFinished(); }));
}

TEST_F(OperationQueueTest, WaitingWhileSuspendedWaitsForWhatRunsOnly)
{
    queue->setMaxConcurrentOperationCount(1);
    auto runs = addBlocker();
    auto waits = add([] {});
    queue->setSuspended(true);

    std::thread opener([this] { gate.release(); });
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(runs->isFinished());
    EXPECT_FALSE(waits->isFinished());
    opener.join();
    queue->setSuspended(false);
}

TEST_F(OperationQueueTest, SuspendingEndsAWaitForWhatHasNotBegun)
{
    queue->setMaxConcurrentOperationCount(1);
    addBlocker();
    auto waits = add([] {});
    std::thread waiter([this] { queue->waitUntilAllOperationsAreFinished(); });

    queue->setSuspended(true);
    gate.release();
    waiter.join();

    EXPECT_FALSE(waits->isFinished());
    queue->setSuspended(false);
}

TEST_F(OperationQueueTest, CancelReachesWhatWaitsAndWhatRuns)
{
    queue->setMaxConcurrentOperationCount(1);
    auto runs = addBlocker();
    bool ran = false;
    auto waits = add([&] { ran = true; });

    queue->cancelAllOperations();
    gate.release();
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(runs->isCancelled());
    EXPECT_TRUE(waits->isCancelled());
    EXPECT_TRUE(waits->isFinished());
    EXPECT_FALSE(ran);
}

TEST_F(OperationQueueTest, AnExceptionEndsTheOperationAndNotTheThread)
{
    LogRecorder log;
    FakeThreadStarter starter(1);
    queue->setMaxConcurrentOperationCount(1);
    auto throws = add([] { throw std::runtime_error("no luck"); });
    auto next = add([] {});

    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(throws->isFinished());
    EXPECT_TRUE(next->isFinished());
    EXPECT_EQ(log.count("no luck"), 1u);
    EXPECT_EQ(starter.startedCount(), 1u);
}

TEST_F(OperationQueueTest, LetsGoOfAnOperationBeforeTheWaitEnds)
{
    auto operation = add([] {});

    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(operation->retainCount(), 1u);
}

TEST_F(OperationQueueTest, LetsGoOfAnOperationWithNoLockHeld)
{
    // The closure dies with the operation, on the queue's thread, and asks the queue there.
    std::size_t count = 0;
    auto asker = std::shared_ptr<void>(nullptr, [&](void*) { count = queue->operationCount(); });
    queue->addOperation(makeRef<BlockOperation>([asker = std::move(asker)] {}));

    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(count, 1u);
}

TEST_F(OperationQueueTest, AnOperationMayAddOthers)
{
    std::atomic<int> count{ 0 };
    for (int index = 0; index < 10; ++index) {
        add([&] {
            ++count;
            add([&] { ++count; });
        });
    }

    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(count, 20);
}

TEST_F(OperationQueueTest, ManyThreadsMayAddAtOnce)
{
    std::atomic<int> count{ 0 };
    queue->setMaxConcurrentOperationCount(4);
    std::vector<std::thread> adders;
    adders.reserve(4);
    for (int index = 0; index < 4; ++index) {
        adders.emplace_back([&] {
            for (int added = 0; added < 100; ++added)
                add([&] { ++count; });
        });
    }

    for (auto& adder : adders)
        adder.join();
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(count, 400);
}

TEST_F(OperationQueueTest, DoesNothingWithNil)
{
    queue->addOperation(nullptr);

    EXPECT_EQ(queue->operationCount(), 0u);
}

#ifndef NDEBUG
TEST_F(OperationQueueDeathTest, AddingAnOperationTwiceIsAProgrammingError)
{
    queue->setSuspended(true);
    auto operation = add([] {});

    EXPECT_DEATH(queue->addOperation(operation), "added to one queue, once");
    queue->setSuspended(false);
}
#endif

} // namespace

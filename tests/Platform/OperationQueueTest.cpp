// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/OperationQueue.h"

#include "tests/support/BlockOperation.h"
#include "tests/support/FakeThreadStarter.h"
#include "tests/support/LogRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <latch>
#include <memory>
#include <mutex>
#include <semaphore>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <pthread.h>
#include <sched.h>
#include <signal.h>

namespace {

using zef::makeRef;
using zef::OperationQueue;
using zef::QueuePriority;
using zef::Ref;

class OperationQueueTest : public testing::Test {
protected:
    ~OperationQueueTest() override
    {
        if (queue)
            queue->waitUntilAllOperationsAreFinished();
    }

    Ref<BlockOperation> add(
        std::function<void()> block, QueuePriority priority = QueuePriority::normal)
    {
        auto operation = makeRef<BlockOperation>(std::move(block));
        operation->setQueuePriority(priority);
        queue->addOperation(operation);
        return operation;
    }

    /// An operation that says when it runs and then waits for `gate`.
    Ref<BlockOperation> addBlocker()
    {
        auto operation = add([this] {
            running.release();
            gate.acquire();
        });
        running.acquire();
        return operation;
    }

    Ref<BlockOperation> addRecorder(std::string name, QueuePriority priority)
    {
        return add([this, name] { order.push_back(name); }, priority);
    }

    /// Lets other threads get into their waits. A right queue passes the test also if they don't; a
    /// wrong one may be found out only if they do.
    static void letOthersSettle()
    {
        for (int turn = 0; turn < 1000; ++turn)
            std::this_thread::yield();
    }

    std::counting_semaphore<> running{ 0 };
    std::counting_semaphore<> gate{ 0 };
    std::vector<std::string> order;
    // Idle threads stay until they are told, so that a lost wake-up can't hide behind their
    // timeout.
    Ref<OperationQueue> queue = makeRef<OperationQueue>(1e6);
};

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

TEST_F(OperationQueueTest, ARaisedMaximumWakesAnIdleThread)
{
    queue->setMaxConcurrentOperationCount(2);
    std::latch bothRunning(2);
    for (int index = 0; index < 2; ++index)
        add([&] { bothRunning.arrive_and_wait(); });
    queue->waitUntilAllOperationsAreFinished();
    queue->setMaxConcurrentOperationCount(1);
    addBlocker();
    std::binary_semaphore ran(0);
    add([&] { ran.release(); });
    letOthersSettle();

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
    for (int index = 0; index < 10; ++index)
        operations.push_back(add([] {}));

    queue->setSuspended(false);
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(std::all_of(operations.begin(), operations.end(),
        [](const auto& operation) { return operation->isFinished(); }));
}

TEST_F(OperationQueueTest, AResumedQueueWakesAnIdleThread)
{
    add([] {});
    queue->waitUntilAllOperationsAreFinished();
    queue->setSuspended(true);
    auto operation = add([] {});

    queue->setSuspended(false);
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(operation->isFinished());
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

TEST_F(OperationQueueTest, SuspendingEndsAWaitWhenNoThreadHasCaughtUpYet)
{
    FakeThreadStarter starter(1);
    starter.holdBack();
    auto waits = add([] {});
    std::thread waiter([&] {
        running.release();
        queue->waitUntilAllOperationsAreFinished();
    });
    running.acquire();
    letOthersSettle();

    queue->setSuspended(true);
    waiter.join();

    EXPECT_FALSE(waits->isFinished());
    queue->setSuspended(false);
    starter.letGo();
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

TEST_F(OperationQueueTest, StartsNoThreadUntilThereIsWork)
{
    FakeThreadStarter starter(64);
    auto other = makeRef<OperationQueue>();
    other->setSuspended(true);
    other->addOperation(makeRef<BlockOperation>([] {}));

    EXPECT_EQ(starter.startedCount(), 0u);
}

TEST_F(OperationQueueTest, UsesAnIdleThreadAgain)
{
    FakeThreadStarter starter(64);
    std::set<std::thread::id> runners;
    for (int index = 0; index < 20; ++index) {
        add([&] { runners.insert(std::this_thread::get_id()); });
        queue->waitUntilAllOperationsAreFinished();
    }

    EXPECT_EQ(starter.startedCount(), 1u);
    EXPECT_EQ(runners.size(), 1u);
}

TEST_F(OperationQueueTest, IdleThreadsLeaveAndNewOnesComeBack)
{
    FakeThreadStarter starter(64);
    queue = makeRef<OperationQueue>(0);
    add([] {});
    starter.waitUntilAllHaveEnded();
    auto later = add([] {});

    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(later->isFinished());
    EXPECT_EQ(starter.startedCount(), 2u);
    starter.waitUntilAllHaveEnded();
}

TEST_F(OperationQueueTest, AQueueThatIsLetGoRunsWhatWaitsAndEndsItsThreads)
{
    FakeThreadStarter starter(64);
    queue->setMaxConcurrentOperationCount(1);
    auto runs = addBlocker();
    auto waits = add([] {});

    queue = nullptr;
    gate.release();
    starter.waitUntilAllHaveEnded();

    EXPECT_TRUE(runs->isFinished());
    EXPECT_TRUE(waits->isFinished());
    EXPECT_EQ(waits->retainCount(), 1u);
}

TEST_F(OperationQueueTest, ASuspendedQueueThatIsLetGoFinishesWhatWaitsUnrun)
{
    bool ran = false;
    queue->setSuspended(true);
    auto waits = add([&] { ran = true; });

    queue = nullptr;

    EXPECT_FALSE(ran);
    EXPECT_TRUE(waits->isCancelled());
    EXPECT_TRUE(waits->isFinished());
    EXPECT_EQ(waits->retainCount(), 1u);
}

TEST_F(OperationQueueTest, RunsOnTheCallingThreadWhenTheSystemGivesNone)
{
    FakeThreadStarter starter(0);
    std::thread::id runner;

    auto operation = add([&] { runner = std::this_thread::get_id(); });

    EXPECT_TRUE(operation->isFinished());
    EXPECT_EQ(runner, std::this_thread::get_id());
    EXPECT_EQ(queue->operationCount(), 0u);
}

TEST_F(OperationQueueTest, ResumingRunsEverythingWhenTheSystemGivesNoThread)
{
    FakeThreadStarter starter(0);
    queue->setSuspended(true);
    addRecorder("normal", QueuePriority::normal);
    addRecorder("high", QueuePriority::high);

    queue->setSuspended(false);

    const std::vector<std::string> expected{ "high", "normal" };
    EXPECT_EQ(order, expected);
}

TEST_F(OperationQueueTest, MakesDoWithTheThreadsThatItGets)
{
    FakeThreadStarter starter(1);
    queue->setMaxConcurrentOperationCount(16);
    std::atomic<int> count{ 0 };
    const auto self = std::this_thread::get_id();
    std::atomic<bool> ranHere{ false };

    for (int index = 0; index < 50; ++index) {
        add([&] {
            ++count;
            ranHere = ranHere || std::this_thread::get_id() == self;
        });
    }
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(count, 50);
    EXPECT_FALSE(ranHere);
}

TEST_F(OperationQueueTest, ACallingThreadThatIsThroughHandsOnToAnIdleThread)
{
    FakeThreadStarter starter(0);
    queue->setMaxConcurrentOperationCount(3);
    std::binary_semaphore callersGate(0);
    std::thread caller([&] {
        add([&] {
            running.release();
            callersGate.acquire();
        });
    });
    running.acquire();
    starter.setLimit(2);
    addBlocker();
    std::binary_semaphore ran(0);
    add([&] { ran.release(); });
    ran.acquire();
    queue->setMaxConcurrentOperationCount(2);
    add([&] { ran.release(); });
    letOthersSettle();

    callersGate.release();
    caller.join();
    ran.acquire();

    gate.release();
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

TEST_F(OperationQueueTest, ItsThreadsTakeNoSignalsOfTheProcess)
{
    sigset_t mask;
    add([&] { pthread_sigmask(SIG_SETMASK, nullptr, &mask); });
    queue->waitUntilAllOperationsAreFinished();

    for (const auto signal : { SIGINT, SIGTERM, SIGCHLD, SIGUSR1, SIGPIPE })
        EXPECT_EQ(sigismember(&mask, signal), 1) << signal;
    EXPECT_EQ(sigismember(&mask, SIGSEGV), 0);
}

TEST_F(OperationQueueTest, ItsThreadsHaveANameAndAStackForDeepFolders)
{
    char name[16] = "";
    std::size_t stackSize = 0;
    add([&] {
        pthread_getname_np(pthread_self(), name, sizeof name);
        pthread_attr_t attributes;
        pthread_getattr_np(pthread_self(), &attributes);
        pthread_attr_getstacksize(&attributes, &stackSize);
        pthread_attr_destroy(&attributes);
    });
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_STREQ(name, "zef-operations");
    EXPECT_GE(stackSize, 8u * 1024 * 1024);
}

TEST_F(OperationQueueTest, DoesNothingWithNil)
{
    queue->addOperation(nullptr);

    EXPECT_EQ(queue->operationCount(), 0u);
}

#ifndef NDEBUG
TEST_F(OperationQueueTest, AddingAnOperationTwiceIsAProgrammingError)
{
    queue->setSuspended(true);
    auto operation = add([] {});

    EXPECT_DEATH(queue->addOperation(operation), "added to one queue, once");
    queue->setSuspended(false);
}
#endif

TEST_F(OperationQueueTest, BusyThreadsAtProcessExitAreNoHarm)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            auto busy = makeRef<OperationQueue>();
            auto started = std::make_shared<std::binary_semaphore>(0);
            busy->addOperation(makeRef<BlockOperation>([started](BlockOperation& self) {
                started->release();
                while (!self.isCancelled())
                    std::this_thread::yield();
            }));
            started->acquire();
            busy = nullptr;
            std::exit(3);
        },
        testing::ExitedWithCode(3), "");
}

TEST(OnlineProcessorCountTest, CountsTheProcessorsThatTheThreadMayRunOn)
{
    cpu_set_t all;
    ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
    std::size_t first = 0;
    while (!CPU_ISSET(first, &all))
        ++first;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);

    EXPECT_EQ(zef::onlineProcessorCount(), static_cast<std::size_t>(CPU_COUNT(&all)));
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(zef::onlineProcessorCount(), 1u);
    sched_setaffinity(0, sizeof all, &all);
}

} // namespace

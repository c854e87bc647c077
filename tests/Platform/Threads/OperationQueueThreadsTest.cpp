// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/BlockOperation.h"
#include "tests/support/FakeThreadStarter.h"
#include "tests/support/OperationQueueFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <latch>
#include <memory>
#include <semaphore>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sched.h>

namespace {

using zef::makeRef;
using zef::OperationQueue;
using zef::QueuePriority;

class OperationQueueThreadsTest : public OperationQueueFixture { };

using OperationQueueThreadsDeathTest
    = OperationQueueThreadsTest; // GoogleTest runs these first, before there are threads

TEST_F(OperationQueueThreadsTest, ARaisedMaximumWakesAnIdleThread)
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

TEST_F(OperationQueueThreadsTest, AResumedQueueWakesAnIdleThread)
{
    add([] {});
    queue->waitUntilAllOperationsAreFinished();
    queue->setSuspended(true);
    auto operation = add([] {});

    queue->setSuspended(false);
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_TRUE(operation->isFinished());
}

TEST_F(OperationQueueThreadsTest, SuspendingEndsAWaitWhenNoThreadHasCaughtUpYet)
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

TEST_F(OperationQueueThreadsTest, StartsNoThreadUntilThereIsWork)
{
    FakeThreadStarter starter(64);
    auto other = makeRef<OperationQueue>();
    other->setSuspended(true);
    other->addOperation(makeRef<BlockOperation>([] {}));

    EXPECT_EQ(starter.startedCount(), 0u);
}

TEST_F(OperationQueueThreadsTest, UsesAnIdleThreadAgain)
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

TEST_F(OperationQueueThreadsTest, IdleThreadsLeaveAndNewOnesComeBack)
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

TEST_F(OperationQueueThreadsTest, AQueueThatIsLetGoRunsWhatWaitsAndEndsItsThreads)
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

TEST_F(OperationQueueThreadsTest, ASuspendedQueueThatIsLetGoFinishesWhatWaitsUnrun)
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

TEST_F(OperationQueueThreadsTest, RunsOnTheCallingThreadWhenTheSystemGivesNone)
{
    FakeThreadStarter starter(0);
    std::thread::id runner;

    auto operation = add([&] { runner = std::this_thread::get_id(); });

    EXPECT_TRUE(operation->isFinished());
    EXPECT_EQ(runner, std::this_thread::get_id());
    EXPECT_EQ(queue->operationCount(), 0u);
}

TEST_F(OperationQueueThreadsTest, ResumingRunsEverythingWhenTheSystemGivesNoThread)
{
    FakeThreadStarter starter(0);
    queue->setSuspended(true);
    addRecorder("normal", QueuePriority::normal);
    addRecorder("high", QueuePriority::high);

    queue->setSuspended(false);

    const std::vector<std::string> expected{ "high", "normal" };
    EXPECT_EQ(order, expected);
}

TEST_F(OperationQueueThreadsTest, MakesDoWithTheThreadsThatItGets)
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

TEST_F(OperationQueueThreadsTest, ACallingThreadThatIsThroughHandsOnToAnIdleThread)
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

TEST_F(OperationQueueThreadsTest, ItsThreadsTakeNoSignalsOfTheProcess)
{
    sigset_t mask;
    add([&] { pthread_sigmask(SIG_SETMASK, nullptr, &mask); });
    queue->waitUntilAllOperationsAreFinished();

    for (const auto signal : { SIGINT, SIGTERM, SIGCHLD, SIGUSR1, SIGPIPE })
        EXPECT_EQ(sigismember(&mask, signal), 1) << signal;
    EXPECT_EQ(sigismember(&mask, SIGSEGV), 0);
}

TEST_F(OperationQueueThreadsTest, ItsThreadsHaveANameAndAStackForDeepFolders)
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

TEST_F(OperationQueueThreadsDeathTest, BusyThreadsAtProcessExitAreNoHarm)
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

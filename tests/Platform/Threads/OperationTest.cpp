// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/Operation.h"

#include "tests/support/BlockOperation.h"
#include "tests/support/LogRecorder.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

using zef::makeRef;

TEST(OperationTest, StartRunsMainOnTheCallingThread)
{
    std::thread::id runner;
    auto operation = makeRef<BlockOperation>([&] { runner = std::this_thread::get_id(); });

    operation->start();

    EXPECT_EQ(runner, std::this_thread::get_id());
}

TEST(OperationTest, IsNeitherExecutingNorFinishedBeforeItStarts)
{
    auto operation = makeRef<BlockOperation>([] {});

    EXPECT_FALSE(operation->isExecuting());
    EXPECT_FALSE(operation->isFinished());
    EXPECT_FALSE(operation->isCancelled());
}

TEST(OperationTest, IsExecutingInsideMainAndFinishedAfterwards)
{
    bool wasExecuting = false;
    bool wasFinished = true;
    auto operation = makeRef<BlockOperation>([&](BlockOperation& self) {
        wasExecuting = self.isExecuting();
        wasFinished = self.isFinished();
    });

    operation->start();

    EXPECT_TRUE(wasExecuting);
    EXPECT_FALSE(wasFinished);
    EXPECT_FALSE(operation->isExecuting());
    EXPECT_TRUE(operation->isFinished());
}

TEST(OperationTest, ACancelledOperationFinishesWithoutRunningMain)
{
    bool ran = false;
    auto operation = makeRef<BlockOperation>([&] { ran = true; });

    operation->cancel();
    operation->start();

    EXPECT_FALSE(ran);
    EXPECT_TRUE(operation->isCancelled());
    EXPECT_TRUE(operation->isFinished());
}

TEST(OperationTest, MainSeesThatItWasCancelledMeanwhile)
{
    bool cancelled = false;
    auto operation = makeRef<BlockOperation>([&](BlockOperation& self) {
        self.cancel();
        cancelled = self.isCancelled();
    });

    operation->start();

    EXPECT_TRUE(cancelled);
    EXPECT_TRUE(operation->isFinished());
}

TEST(OperationTest, LogsAnExceptionAsOneLineAndFinishes)
{
    LogRecorder log;
    auto operation = makeRef<BlockOperation>([] { throw std::runtime_error("out of\nluck"); });

    operation->start();

    EXPECT_TRUE(operation->isFinished());
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_TRUE(log.contains("out of\\nluck"));
}

TEST(OperationTest, FinishesAfterAnExceptionThatIsNoStandardOne)
{
    LogRecorder log;
    auto operation = makeRef<BlockOperation>([] { throw 7; });

    operation->start();

    EXPECT_TRUE(operation->isFinished());
    EXPECT_EQ(log.lines().size(), 1u);
}

TEST(OperationTest, StaysAliveWhileItsMainGivesUpTheLastReference)
{
    zef::Ref<BlockOperation> owner;
    bool aliveAfterwards = false;
    owner = makeRef<BlockOperation>([&](BlockOperation& self) {
        owner = nullptr;
        aliveAfterwards = self.retainCount() > 0 && self.isExecuting();
    });

    owner->start();

    EXPECT_TRUE(aliveAfterwards);
}

TEST(OperationTest, WhatMainWroteIsSeenByAThreadThatSawItFinished)
{
    int written = 0;
    auto operation = makeRef<BlockOperation>([&] { written = 42; });
    std::thread worker([&] { operation->start(); });

    while (!operation->isFinished())
        std::this_thread::yield();
    const auto seen = written;
    worker.join();

    EXPECT_EQ(seen, 42);
}

TEST(OperationTest, HasNormalPriorityUntilToldOtherwise)
{
    auto operation = makeRef<BlockOperation>([] {});
    EXPECT_EQ(operation->queuePriority(), zef::QueuePriority::normal);

    operation->setQueuePriority(zef::QueuePriority::high);

    EXPECT_EQ(operation->queuePriority(), zef::QueuePriority::high);
}

TEST(OperationTest, IsAKindOfOperation)
{
    auto operation = makeRef<BlockOperation>([] {});

    EXPECT_TRUE(operation->isKindOfClass(zef::Operation::classObject));
    EXPECT_TRUE(operation->isKindOfClass(ZEFObject::classObject));
}

#ifndef NDEBUG
TEST(OperationDeathTest, StartingTwiceIsAProgrammingError)
{
    auto operation = makeRef<BlockOperation>([] {});
    operation->start();

    EXPECT_DEATH(operation->start(), "started once");
}
#endif

} // namespace

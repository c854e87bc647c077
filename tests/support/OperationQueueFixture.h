// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/BlockOperation.h"

#include <gtest/gtest.h>

#include <functional>
#include <semaphore>
#include <string>
#include <thread>
#include <utility>
#include <vector>

/// An operation queue, and operations that the test controls.
class OperationQueueFixture : public testing::Test {
protected:
    ~OperationQueueFixture() override
    {
        if (queue)
            queue->waitUntilAllOperationsAreFinished();
    }

    zef::Ref<BlockOperation> add(
        std::function<void()> block, zef::QueuePriority priority = zef::QueuePriority::normal)
    {
        auto operation = zef::makeRef<BlockOperation>(std::move(block));
        operation->setQueuePriority(priority);
        queue->addOperation(operation);
        return operation;
    }

    /// An operation that says when it runs and then waits for `gate`.
    zef::Ref<BlockOperation> addBlocker()
    {
        auto operation = add([this] {
            running.release();
            gate.acquire();
        });
        running.acquire();
        return operation;
    }

    zef::Ref<BlockOperation> addRecorder(const std::string& name, zef::QueuePriority priority)
    {
        return add([this, name] { order.push_back(name); }, priority);
    }

    /// Lets other threads get into their waits. A right queue passes also if they don't; a wrong
    /// one may be found out only if they do.
    static void letOthersSettle()
    {
        for (int turn = 0; turn < 1000; ++turn)
            std::this_thread::yield();
    }

    std::counting_semaphore<> running{ 0 };
    std::counting_semaphore<> gate{ 0 };
    std::vector<std::string> order;
    // Idle threads stay until they are told: no timeout hides a lost wake-up.
    zef::Ref<zef::OperationQueue> queue = zef::makeRef<zef::OperationQueue>(1e6);
};

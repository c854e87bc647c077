// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/Lock.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

namespace {

TEST(LockTest, KeepsThreadsApart)
{
    auto lock = zef::makeRef<zef::Lock>();
    int count = 0;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([lock, &count] {
            for (int turn = 0; turn < 1000; ++turn) {
                std::lock_guard guard(*lock);
                ++count;
            }
        });
    }

    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(count, 4000);
}

TEST(LockTest, TryLockNeverWaits)
{
    auto lock = zef::makeRef<zef::Lock>();
    bool whileTaken = true;
    bool whileFree = false;
    const auto tryOnOtherThread = [&lock](bool& result) {
        std::thread([&] {
            result = lock->tryLock();
            if (result)
                lock->unlock();
        }).join();
    };

    lock->lock();
    tryOnOtherThread(whileTaken);
    lock->unlock();
    tryOnOtherThread(whileFree);

    EXPECT_FALSE(whileTaken);
    EXPECT_TRUE(whileFree);
}

} // namespace

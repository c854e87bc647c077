// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/Mutex.h"

#include "ZEFFilesystemTools/Platform/Threads/ByteLock.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr int threadCount = 4;
constexpr int rounds = 10000;

// Not atomic: only a lock that works counts right.
template <typename Work> void onThreads(Work&& work)
{
    std::vector<std::thread> threads;
    for (int index = 0; index < threadCount; ++index) {
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round)
                work();
        });
    }
    for (auto& thread : threads)
        thread.join();
}

TEST(MutexTest, LocksAndUnlocksWithoutError)
{
    static auto& mutex = zef::Mutex::makeImmortal();

    EXPECT_EQ(mutex.lock(), 0);
    EXPECT_EQ(mutex.unlock(), 0);
    EXPECT_EQ(mutex.lock(), 0);
    EXPECT_EQ(mutex.unlock(), 0);
}

TEST(MutexTest, KeepsThreadsApart)
{
    static auto& mutex = zef::Mutex::makeImmortal();
    int count = 0;

    onThreads([&] {
        mutex.lock();
        ++count;
        mutex.unlock();
    });

    EXPECT_EQ(count, threadCount * rounds);
}

TEST(ByteLockTest, KeepsThreadsApart)
{
    zef::ByteLock lock;
    int count = 0;

    onThreads([&] {
        std::lock_guard guard(lock);
        ++count;
    });

    EXPECT_EQ(count, threadCount * rounds);
    EXPECT_EQ(sizeof lock, 1u);
}

} // namespace

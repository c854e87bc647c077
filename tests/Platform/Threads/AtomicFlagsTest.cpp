// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/AtomicFlags.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

enum Flag : std::uint8_t { one = 1, two = 2, last = 128 };

TEST(AtomicFlagsTest, HasNoneAtFirst)
{
    const zef::AtomicFlags<Flag> flags;

    EXPECT_FALSE(flags.has(one));
    EXPECT_FALSE(flags.has(last));
}

TEST(AtomicFlagsTest, SetsAndClearsEachByItself)
{
    zef::AtomicFlags<Flag> flags;
    flags.set(one);
    flags.set(last);
    flags.clear(one);

    EXPECT_FALSE(flags.has(one));
    EXPECT_FALSE(flags.has(two));
    EXPECT_TRUE(flags.has(last));
}

TEST(AtomicFlagsTest, TellsWhetherAFlagWasSetBefore)
{
    zef::AtomicFlags<Flag> flags;
    flags.set(two);

    EXPECT_FALSE(flags.testAndSet(one));
    EXPECT_TRUE(flags.testAndSet(one));
    EXPECT_TRUE(flags.testAndClear(one));
    EXPECT_FALSE(flags.testAndClear(one));
    EXPECT_TRUE(flags.has(two));
}

TEST(AtomicFlagsTest, LetsOneOfManyConcurrentThreadsSetAFlagFirst)
{
    for (int round = 0; round < 500; ++round) {
        zef::AtomicFlags<Flag> flags;
        std::atomic<int> firsts{ 0 };
        std::vector<std::thread> threads;
        for (int index = 0; index < 4; ++index)
            threads.emplace_back([&] { firsts += !flags.testAndSet(two); });
        for (auto& thread : threads)
            thread.join();
        ASSERT_EQ(firsts, 1);
    }
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/ThreadChecker.h"

#include <gtest/gtest.h>

namespace {

template <bool isActive>
bool isContentOnAnotherThread(const zef::BasicThreadChecker<isActive>& checker)
{
    bool isContent = false;
    std::thread([&] { isContent = checker.isOnItsThread(); }).join();
    return isContent;
}

TEST(ThreadCheckerTest, AllowsItsThreadAgainAndAgain)
{
    const zef::BasicThreadChecker<true> checker;

    EXPECT_TRUE(checker.isOnItsThread());
    EXPECT_TRUE(checker.isOnItsThread());
}

TEST(ThreadCheckerTest, CatchesASecondThread)
{
    const zef::BasicThreadChecker<true> checker;
    checker.isOnItsThread();

    EXPECT_FALSE(isContentOnAnotherThread(checker));
}

TEST(ThreadCheckerTest, BelongsToTheThreadThatAsksFirstWhereverItWasMade)
{
    const zef::BasicThreadChecker<true> checker;

    EXPECT_TRUE(isContentOnAnotherThread(checker));
    EXPECT_FALSE(checker.isOnItsThread());
}

TEST(ThreadCheckerTest, AllowsEveryThreadWhileInactive)
{
    const zef::BasicThreadChecker<false> checker;
    checker.isOnItsThread();

    EXPECT_TRUE(isContentOnAnotherThread(checker));
}

TEST(ThreadCheckerTest, TakesNoMemoryWhileInactive)
{
    struct Owner {
        int value;
        [[no_unique_address]] zef::BasicThreadChecker<false> checker;
    };

    EXPECT_EQ(sizeof(Owner), sizeof(int));
}

TEST(ThreadCheckerTest, IsActiveWhereAssertionsAre)
{
#ifdef NDEBUG
    EXPECT_FALSE(zef::assertionsAreOn());
#else
    EXPECT_TRUE(zef::assertionsAreOn());
#endif
}

} // namespace

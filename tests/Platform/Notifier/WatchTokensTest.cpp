// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/WatchTokens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

namespace {

class WatchTokensTest : public testing::Test {
protected:
    int addWatched(int watch)
    {
        const int number = tokens.add();
        tokens.setWatch(*tokens.find(number), watch);
        return number;
    }

    bool isMarked(int number) { return tokens.find(number)->isMarked; }

    zef::WatchTokens tokens;
};

TEST_F(WatchTokensTest, NumbersArePositiveAndDifferent)
{
    const int first = tokens.add();
    const int second = tokens.add();

    EXPECT_GT(first, 0);
    EXPECT_GT(second, 0);
    EXPECT_NE(first, second);
}

TEST_F(WatchTokensTest, GivesNoNumberOutTwiceInAHundredThousand)
{
    std::set<int> numbers;
    for (int count = 0; count < 100000; ++count) {
        const int number = tokens.add();
        ASSERT_GT(number, 0);
        ASSERT_TRUE(numbers.insert(number).second) << number;
        tokens.remove(number);
        ASSERT_EQ(tokens.find(number), nullptr);
    }
}

TEST_F(WatchTokensTest, UsesSlotsAgain)
{
    int largestIndex = 0;
    for (int count = 0; count < 100000; ++count) {
        const int number = tokens.add();
        largestIndex = std::max(largestIndex, number & 0xffffff);
        tokens.remove(number);
    }

    EXPECT_LT(largestIndex, 2000);
}

TEST_F(WatchTokensTest, TellsANumberFromALaterOneOfTheSameSlot)
{
    constexpr int indexMask = 0xffffff;
    const int first = tokens.add();
    tokens.remove(first);
    int later = tokens.add();
    while ((later & indexMask) != (first & indexMask)) {
        tokens.remove(later);
        later = tokens.add();
    }

    EXPECT_NE(later, first);
    EXPECT_EQ(tokens.find(first), nullptr);
    EXPECT_EQ(tokens.remove(first), -1);
    EXPECT_NE(tokens.find(later), nullptr);
}

TEST_F(WatchTokensTest, MarksAllTokensOfAWatchAndNoOthers)
{
    const int first = addWatched(7);
    const int second = addWatched(7);
    const int other = addWatched(8);

    tokens.mark(7);

    EXPECT_TRUE(isMarked(first));
    EXPECT_TRUE(isMarked(second));
    EXPECT_FALSE(isMarked(other));
}

TEST_F(WatchTokensTest, GivesAWatchBackWithItsLastTokenInWhateverOrder)
{
    for (const auto& order :
        std::vector<std::vector<int>>{ { 0, 1, 2 }, { 2, 1, 0 }, { 1, 2, 0 } }) {
        const int numbers[] = { addWatched(7), addWatched(7), addWatched(7) };
        EXPECT_EQ(tokens.remove(numbers[order[0]]), -1);
        EXPECT_EQ(tokens.remove(numbers[order[1]]), -1);
        EXPECT_TRUE(tokens.isWatched(7));

        tokens.mark(7);
        EXPECT_TRUE(isMarked(numbers[order[2]]));

        EXPECT_EQ(tokens.remove(numbers[order[2]]), 7);
        EXPECT_FALSE(tokens.isWatched(7));
    }
}

TEST_F(WatchTokensTest, GivesTheOldWatchBackWhenATokenGetsAnother)
{
    const int number = addWatched(7);

    EXPECT_EQ(tokens.setWatch(*tokens.find(number), 8), 7);
    EXPECT_EQ(tokens.setWatch(*tokens.find(number), 8), -1);
    EXPECT_EQ(tokens.watchCount(), 1u);
    EXPECT_EQ(tokens.setStamps(*tokens.find(number), {}, zef::StampClock::ours), 8);
    EXPECT_EQ(tokens.watchCount(), 0u);
}

TEST_F(WatchTokensTest, MakesTheTokensOfAnEndedWatchCompareStamps)
{
    const int first = addWatched(7);
    const int second = addWatched(7);

    tokens.endWatch(7);

    for (const int number : { first, second }) {
        EXPECT_TRUE(isMarked(number));
        EXPECT_EQ(tokens.find(number)->means, zef::WatchToken::Means::stamps);
    }
    EXPECT_FALSE(tokens.isWatched(7));
}

TEST_F(WatchTokensTest, DoubtsWatchesAndNotStamps)
{
    const int watched = addWatched(7);
    tokens.find(watched)->means = zef::WatchToken::Means::watch;
    const int compared = tokens.add();

    tokens.doubtEveryWatch();

    EXPECT_TRUE(isMarked(watched));
    EXPECT_EQ(tokens.find(watched)->means, zef::WatchToken::Means::unverifiedWatch);
    EXPECT_FALSE(isMarked(compared));
    EXPECT_EQ(tokens.find(compared)->means, zef::WatchToken::Means::stamps);
}

TEST_F(WatchTokensTest, IgnoresWatchesItDoesNotKnow)
{
    const int number = addWatched(7);

    tokens.mark(9);
    tokens.endWatch(9);

    EXPECT_FALSE(isMarked(number));
    EXPECT_TRUE(tokens.isWatched(7));
}

} // namespace

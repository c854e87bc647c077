// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/SpyLocator.h"
#include "tests/support/SubscriptionLoadFixture.h"

namespace {

/// When a subscription takes what finds its items again after a move: at once for the first 512 of
/// a listing, soon for the rest, and not at all when nobody has subscribed.
class ZEFDirectorySubscriptionReferencesTest : public SubscriptionLoadFixture {
protected:
    SpyLocator locator;
};

TEST_F(ZEFDirectorySubscriptionReferencesTest, KeepsTheReferencesOfAFewItemsAtOnce)
{
    writeFiles(3);

    subscription = watch(&subscriber);

    EXPECT_EQ(locator.retainCount, 3 + 1);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFDirectorySubscriptionReferencesTest, KeepsNoneForAListingThatNobodySubscribedTo)
{
    writeFiles(3);

    subscription = watch(nullptr);

    EXPECT_EQ(locator.retainCount, 1);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFDirectorySubscriptionReferencesTest, KeepsThoseOfManyItemsInPasses)
{
    writeFiles(600);

    subscription = watch(&subscriber);
    EXPECT_EQ(locator.retainCount, 512 + 1);
    EXPECT_EQ(loop.secondsUntilNextTimer(), 0);

    step(0);
    EXPECT_EQ(locator.retainCount, 600 + 1);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFDirectorySubscriptionReferencesTest, SpendsTwoMillisecondsAPassOnThem)
{
    writeFiles(520);
    locator.onRetain = [this] { clock.advance(0.001); };
    subscription = watch(&subscriber);
    ASSERT_EQ(locator.retainCount, 512 + 1);

    step(0);
    EXPECT_EQ(locator.retainCount, 512 + 2 + 1);
    for (int pass = 0; pass < 4; ++pass)
        step(0.01);

    EXPECT_EQ(locator.retainCount, 520 + 1);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFDirectorySubscriptionReferencesTest, KeepsThemInEveryModeOfTheRunLoop)
{
    writeFiles(520);
    subscription = watch(&subscriber);
    loop.pushMode(zef::RunLoopMode::modal);

    step(0);

    EXPECT_EQ(locator.retainCount, 520 + 1);
    loop.popMode();
}

TEST_F(ZEFDirectorySubscriptionReferencesTest, KeepsThoseOfABackgroundLoadAsItIsTakenIn)
{
    writeFiles(50);
    begin();
    loadBatch();
    EXPECT_EQ(locator.retainCount, 1);

    step(0.1);
    EXPECT_EQ(locator.retainCount, 40 + 1);
}

TEST_F(ZEFDirectorySubscriptionReferencesTest, KeepsThoseOfNewItems)
{
    subscription = watch(&subscriber);
    folder.write("watched/a");
    check(*subscription);

    EXPECT_EQ(locator.retainCount, 1 + 1);
}

TEST_F(ZEFDirectorySubscriptionReferencesTest, LeavesTheRestWhenItDies)
{
    writeFiles(520);
    subscription = watch(&subscriber);

    subscription = nullptr;

    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_EQ(locator.retainCount, locator.releaseCount);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFSubscriberTable.h"

#include "tests/support/RecordingSubscriber.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using zef::makeRef;

TEST(ZEFSubscriberTableTest, KeepsTheOrderInWhichTheySubscribed)
{
    auto first = makeRef<RecordingSubscriber>();
    auto second = makeRef<RecordingSubscriber>();
    auto third = makeRef<RecordingSubscriber>();
    ZEFSubscriberTable table;

    for (const auto& subscriber : { second, third, first })
        table.add(subscriber.get());
    table.remove(third.get());

    const auto entries = table.snapshot();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].object, second.get());
    EXPECT_EQ(entries[1].object, first.get());
}

TEST(ZEFSubscriberTableTest, RemovesNobodyForNil)
{
    auto subscriber = makeRef<RecordingSubscriber>();
    ZEFSubscriberTable table;
    table.add(subscriber.get());

    table.remove(nullptr);

    EXPECT_EQ(table.count(), 1u);
    EXPECT_FALSE(table.contains(nullptr));
}

TEST(ZEFSubscriberTableTest, LetsItsSubscribersDieOnceItIsGone)
{
    auto subscriber = makeRef<RecordingSubscriber>();
    {
        ZEFSubscriberTable table;
        table.add(subscriber.get());
    }
    subscriber = nullptr;
}

#ifndef NDEBUG
TEST(ZEFSubscriberTableDeathTest, ASubscriberThatDiesSubscribedIsAnError)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto dieSubscribed = [] {
        ZEFSubscriberTable table;
        auto subscriber = makeRef<RecordingSubscriber>();
        table.add(subscriber.get());
        subscriber = nullptr;
    };

    EXPECT_DEATH(dieSubscribed(), "_subscriptions");
}
#endif

} // namespace

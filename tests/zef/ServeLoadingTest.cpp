// SPDX-License-Identifier: MIT
#include "tests/support/ServeSubscriptionFixture.h"

namespace {

class ServeLoadingTest : public ServeSubscriptionFixture {
protected:
    ServeLoadingTest()
    {
        client.call("settings", { { "asynchronous", true }, { "paused", true } });
    }

    // Both requests are waiting at once, so that no timer comes in between.
    void subscribeAndLoadImmediately()
    {
        const auto first = client.request(
            "subscribe", { { "subscriber", "s" }, { "path", folder.path() } });
        client.sendLine(
            first + '\n' + client.request("loadImmediately", { { "subscription", 1 } }));
        EXPECT_EQ(client.nextAnswer()["result"]["isLoading"], true);
        EXPECT_EQ(client.nextAnswer()["result"], true);
    }
};

TEST_F(ServeLoadingTest, LoadsInTheBackgroundAndMarksTheEndWithOneMoreNotification)
{
    folder.write("a");
    folder.write("b");

    EXPECT_EQ(subscribe("s")["isLoading"], true);

    const auto found = client.nextNotification(foundChanges);
    EXPECT_EQ(events(found), Texts({ "appeared", "appeared" }));
    EXPECT_EQ(client.nextNotification(foundChanges)["changes"], JSON::array());
    EXPECT_EQ(subscription(1)["isLoading"], false);
    EXPECT_EQ(subscription(1)["files"].size(), 2u);
}

TEST_F(ServeLoadingTest, LoadsImmediatelyWithExactlyOneNotification)
{
    folder.write("a");
    subscribeAndLoadImmediately();

    const auto told = client.takeNotifications(foundChanges);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(events(told[0]), Texts({ "appeared" }));
    EXPECT_EQ(subscription(1)["isLoading"], false);
}

TEST_F(ServeLoadingTest, LoadsAnEmptyFolderImmediatelyWithAnEmptyNotification)
{
    subscribeAndLoadImmediately();

    const auto told = client.takeNotifications(foundChanges);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0]["changes"], JSON::array());
    EXPECT_EQ(client.call("loadImmediately", { { "subscription", 1 } }), true);
    EXPECT_TRUE(client.takeNotifications(foundChanges).empty());
}

} // namespace

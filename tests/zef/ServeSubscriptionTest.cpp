// SPDX-License-Identifier: MIT
#include "tests/support/ServeSubscriptionFixture.h"

namespace {

class ServeSubscriptionTest : public ServeSubscriptionFixture { };

TEST_F(ServeSubscriptionTest, NumbersASubscriptionAndSharesItBetweenSubscribers)
{
    const auto url = folder.folderUrl().absoluteString();

    const auto first = subscribe("one");
    const auto second = client.call("subscribe", { { "subscriber", "two" }, { "url", url } });

    EXPECT_EQ(first, JSON({ { "subscription", 1 }, { "url", url }, { "isLoading", false } }));
    EXPECT_EQ(second, first);
    EXPECT_EQ(client.call("subscriptions"), JSON({ 1 }));
    EXPECT_EQ(subscription(1)["numberOfSubscribers"], 2);
}

TEST_F(ServeSubscriptionTest, TakesEqualTextsForOneSubscriber)
{
    subscribe("one");
    subscribe("one");

    EXPECT_EQ(subscription(1)["numberOfSubscribers"], 1);
}

TEST_F(ServeSubscriptionTest, SubscribesToTheFolderOfAnItem)
{
    const auto item = client.call("fileItem", { { "path", folder.path() } });

    const auto made = client.call("subscribe", { { "subscriber", "s" }, { "id", item["id"] } });

    EXPECT_EQ(made["url"], folder.folderUrl().absoluteString());
    EXPECT_EQ(subscription(made["subscription"])["directoryFile"], item);
}

TEST_F(ServeSubscriptionTest, ListsSubscriptionsInTheOrderOfTheirCreation)
{
    folder.makeFolder("b");
    folder.makeFolder("a");

    subscribe("s", "b");
    subscribe("s", "a");
    subscribe("s");

    EXPECT_EQ(client.call("subscriptions"), JSON({ 1, 2, 3 }));
    EXPECT_EQ(subscription(1)["path"], folder.path("b"));
    EXPECT_EQ(subscription(3)["path"], folder.path());
}

TEST_F(ServeSubscriptionTest, SaysNullAndLogsWhenThereIsNoFolder)
{
    const auto url = folder.write("file").absoluteString();

    EXPECT_TRUE(subscribe("s", "missing").is_null());
    EXPECT_TRUE(client.takeNotifications("log").empty());
    EXPECT_TRUE(subscribe("s", "file").is_null());
    EXPECT_EQ(client.takeNotifications("log"),
        std::vector<JSON>({ { { "message",
            "The path " + url
                + "/ does not point to a valid directory, so an "
                  "ZEFDirectorySubscription object cannot be created." } } }));
    EXPECT_EQ(client.call("subscriptions"), JSON::array());
}

TEST_F(ServeSubscriptionTest, NeedsASubscriberAndExactlyOneFolder)
{
    const auto path = folder.path();

    EXPECT_EQ(client.errorCode("subscribe", { { "subscriber", "s" } }), -32602);
    EXPECT_EQ(client.errorCode("subscribe", { { "path", path } }), -32602);
    EXPECT_EQ(client.errorCode("subscribe", { { "subscriber", 1 }, { "path", path } }), -32602);
    EXPECT_EQ(
        client.errorCode("subscribe", { { "subscriber", "s" }, { "path", path }, { "id", 1 } }),
        -32602);
    EXPECT_EQ(client.errorCode("subscribe", { { "subscriber", "s" }, { "id", 99 } }), -32602);
    EXPECT_EQ(client.errorCode("subscribe", { { "subscriber", "s" }, { "url", "x" } }), -32602);
    EXPECT_EQ(client.call("subscriptions"), JSON::array());
}

TEST_F(ServeSubscriptionTest, TellsEverythingOfASubscription)
{
    folder.write("a");
    folder.makeFolder("sub");
    subscribe("s");

    const auto result = subscription(1);

    EXPECT_EQ(result["url"], folder.folderUrl().absoluteString());
    EXPECT_EQ(result["path"], folder.path());
    EXPECT_EQ(result["isValid"], true);
    EXPECT_EQ(result["isLoading"], false);
    EXPECT_EQ(result["numberOfSubscribers"], 1);
    EXPECT_EQ(result["files"].size(), 2u);
    EXPECT_EQ(result["directoryFile"]["path"], folder.path());
    const auto description = result["description"].get<std::string>();
    EXPECT_EQ(description.rfind("<ZEFDirectorySubscription: 0x", 0), 0u);
    EXPECT_NE(description.find(">, " + folder.folderUrl().absoluteString()), std::string::npos);
    EXPECT_EQ(result.size(), 8u);
}

TEST_F(ServeSubscriptionTest, TellsEverySubscriberOfAChangeBeforeItAnswersThePoll)
{
    subscribe("one");
    subscribe("two");
    folder.write("a");

    const auto told = check();

    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[0]["subscriber"], "one");
    EXPECT_EQ(told[1]["subscriber"], "two");
    EXPECT_EQ(told[0]["subscription"], 1);
    EXPECT_EQ(told[0]["changes"], told[1]["changes"]);
    EXPECT_EQ(events(told[0]), Texts({ "updated", "appeared" }));
    const auto& record = told[0]["changes"][1];
    EXPECT_EQ(record["event"], 16);
    EXPECT_EQ(record["file"]["path"], folder.path("a"));
    EXPECT_EQ(record.size(), 3u);
}

TEST_F(ServeSubscriptionTest, TellsTheSubscribersOfTheOlderSubscriptionFirst)
{
    folder.makeFolder("b");
    folder.makeFolder("a");
    subscribe("s", "b");
    subscribe("s", "a");
    folder.write("a/x");
    folder.write("b/x");

    const auto told = check();

    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[0]["subscription"], 1);
    EXPECT_EQ(told[1]["subscription"], 2);
}

TEST_F(ServeSubscriptionTest, ShowsARemovedFileWithoutALocation)
{
    folder.write("a");
    subscribe("s");
    folder.remove("a");

    const auto told = check();

    ASSERT_EQ(events(told.at(0)), Texts({ "updated", "removed" }));
    const auto& file = told[0]["changes"][1]["file"];
    EXPECT_EQ(file["isValid"], false);
    EXPECT_TRUE(file["url"].is_null());
    EXPECT_TRUE(file["path"].is_null());
}

TEST_F(ServeSubscriptionTest, TellsNobodyWhenNothingChanged)
{
    subscribe("s");

    EXPECT_TRUE(check().empty());
}

TEST_F(ServeSubscriptionTest, ChecksOneDirectoryAlone)
{
    folder.makeFolder("a");
    folder.makeFolder("b");
    subscribe("s", "a");
    subscribe("s", "b");
    folder.write("a/x");
    folder.write("b/x");

    EXPECT_EQ(client.call("checkDirectory", { { "subscription", 2 } }), true);

    const auto told = client.takeNotifications(foundChanges);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0]["subscription"], 2);
}

TEST_F(ServeSubscriptionTest, PollsByItselfWhileNoRequestIsWaiting)
{
    client.call("settings", { { "pollingInterval", 0.01 } });
    subscribe("s");
    folder.write("a");

    EXPECT_EQ(client.nextNotification(foundChanges)["subscriber"], "s");
}

TEST_F(ServeSubscriptionTest, DoesNotPollWhilePaused)
{
    client.call("settings", { { "pollingInterval", 0.01 }, { "paused", true } });
    folder.makeFolder("sub");
    subscribe("s");
    client.call("settings", { { "paused", false } });
    client.call("settings", { { "paused", true } });
    folder.write("a");
    // Had the timer run, it would have told of the file before this.
    for (int round = 0; round < 20; ++round)
        client.call("settings");

    EXPECT_TRUE(client.takeNotifications(foundChanges).empty());
    EXPECT_EQ(check().size(), 1u);
}

TEST_F(ServeSubscriptionTest, TellsASubscriberThatLeftNothingMore)
{
    subscribe("one");
    subscribe("two");
    folder.write("a");

    EXPECT_EQ(
        client.call("unsubscribe", { { "subscriber", "one" }, { "path", folder.path() } }), true);

    const auto told = check();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0]["subscriber"], "two");
}

TEST_F(ServeSubscriptionTest, UnsubscribesInEveryWayThatNamesTheFolder)
{
    const auto item = client.call("fileItem", { { "path", folder.path() } });
    const std::vector<JSON> ways{ { { "path", folder.path() } },
        { { "url", folder.folderUrl().absoluteString() } }, { { "id", item["id"] } },
        { { "subscription", 1 } }, JSON::object() };

    for (auto parameters : ways) {
        subscribe("s");
        EXPECT_EQ(subscription(1)["numberOfSubscribers"], 1);
        parameters["subscriber"] = "s";
        EXPECT_EQ(client.call("unsubscribe", parameters), true);
        EXPECT_EQ(subscription(1)["numberOfSubscribers"], 0);
    }
}

TEST_F(ServeSubscriptionTest, UnsubscribesFromEveryFolderAtOnce)
{
    folder.makeFolder("a");
    subscribe("s", "a");
    subscribe("s");
    subscribe("t");

    client.call("unsubscribe", { { "subscriber", "s" } });

    EXPECT_EQ(subscription(1)["numberOfSubscribers"], 0);
    EXPECT_EQ(subscription(2)["numberOfSubscribers"], 1);
}

TEST_F(ServeSubscriptionTest, UnsubscribesAStrangerWithoutEffect)
{
    subscribe("s");

    EXPECT_EQ(client.call("unsubscribe", { { "subscriber", "t" } }), true);
    EXPECT_EQ(
        client.call("unsubscribe", { { "subscriber", "t" }, { "path", folder.path("no") } }), true);
    EXPECT_EQ(subscription(1)["numberOfSubscribers"], 1);
}

TEST_F(ServeSubscriptionTest, RefusesToUnsubscribeWithoutASubscriberOrFromSeveralThings)
{
    subscribe("s");

    EXPECT_EQ(client.errorCode("unsubscribe"), -32602);
    EXPECT_EQ(client.errorCode("unsubscribe",
                  { { "subscriber", "s" }, { "path", folder.path() }, { "subscription", 1 } }),
        -32602);
    EXPECT_EQ(
        client.errorCode("unsubscribe", { { "subscriber", "s" }, { "subscription", 9 } }), -32602);
    EXPECT_EQ(subscription(1)["numberOfSubscribers"], 1);
}

TEST_F(ServeSubscriptionTest, KeepsASubscriptionForAWhileAfterItsLastSubscriberLeft)
{
    subscribe("s");
    client.call("unsubscribe", { { "subscriber", "s" } });

    EXPECT_EQ(client.call("subscriptions"), JSON({ 1 }));
    EXPECT_EQ(subscribe("t")["subscription"], 1);
}

TEST_F(ServeSubscriptionTest, DropsTheSubscriptionOfALostFolderWithItsLastSubscriber)
{
    folder.makeFolder("sub");
    folder.write("sub/a");
    subscribe("s", "sub");
    folder.remove("sub");
    ASSERT_EQ(events(check().at(0)), Texts({ "removed" }));
    EXPECT_EQ(subscription(1)["isValid"], false);
    EXPECT_TRUE(subscription(1)["directoryFile"].is_null());
    EXPECT_TRUE(subscription(1)["path"].is_null());

    client.call("unsubscribe", { { "subscriber", "s" } });

    // The next pass of the run loop drops it; passes come between requests.
    while (client.call("subscriptions") != JSON::array()) { }
    EXPECT_EQ(client.errorCode("subscription", { { "subscription", 1 } }), -32602);
    folder.makeFolder("sub");
    EXPECT_EQ(subscribe("s", "sub")["subscription"], 2);
}

TEST_F(ServeSubscriptionTest, RefusesNumbersThatAreNoSubscription)
{
    for (const auto* method : { "subscription", "checkDirectory", "loadImmediately" }) {
        EXPECT_EQ(client.errorCode(method), -32602);
        EXPECT_EQ(client.errorCode(method, { { "subscription", 1 } }), -32602);
        EXPECT_EQ(client.errorCode(method, { { "subscription", "1" } }), -32602);
    }
}

} // namespace

// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using JSON = ServeClient::JSON;

class ServeLifetimeTest : public testing::Test {
protected:
    void subscribe()
    {
        client.call("subscribe", { { "subscriber", "s" }, { "path", folder.path() } });
    }

    TemporaryFolder folder;
    ServeClient client;
};

TEST_F(ServeLifetimeTest, EndsWellWithItsInput)
{
    folder.write("a");
    subscribe();
    client.call("fileItem", { { "path", folder.path("a") } });

    client.process().closeInput();

    EXPECT_EQ(client.process().status(), 0);
    EXPECT_EQ(client.process().errorText(), "");
}

TEST_F(ServeLifetimeTest, AnswersALastLineWithoutALineEnd)
{
    client.process().send(client.request("subscriptions"));
    client.process().closeInput();

    EXPECT_EQ(client.nextAnswer()["result"], JSON::array());
    EXPECT_EQ(client.process().status(), 0);
}

TEST_F(ServeLifetimeTest, EndsAfterItHasAnsweredAShutdown)
{
    subscribe();

    EXPECT_EQ(client.call("shutdown"), true);

    EXPECT_FALSE(client.process().nextLine());
    EXPECT_EQ(client.process().status(), 0);
}

TEST_F(ServeLifetimeTest, DoesNothingThatComesAfterAShutdown)
{
    const auto shutdown = client.request("shutdown");
    client.sendLine(shutdown + '\n' + client.request("subscriptions"));

    EXPECT_EQ(client.nextAnswer()["id"], 1);
    EXPECT_FALSE(client.process().nextLine());
    EXPECT_EQ(client.process().status(), 0);
}

TEST_F(ServeLifetimeTest, ShutsDownWhileAFolderLoads)
{
    client.call("settings", { { "asynchronous", true } });
    subscribe();

    client.call("shutdown");

    EXPECT_EQ(client.process().status(), 0);
}

TEST_F(ServeLifetimeTest, EndsWithTheStatusOfAnInterruption)
{
    subscribe();

    client.process().signal(SIGINT);

    EXPECT_EQ(client.process().status(), 130);
    EXPECT_EQ(client.process().errorText(), "");
}

TEST_F(ServeLifetimeTest, EndsWithTheStatusOfATermination)
{
    subscribe();

    client.process().signal(SIGTERM);

    EXPECT_EQ(client.process().status(), 143);
}

TEST_F(ServeLifetimeTest, EndsQuietlyWhenNobodyReadsAnyMore)
{
    subscribe();

    client.process().closeOutput();

    EXPECT_EQ(client.process().status(), 0);
    EXPECT_EQ(client.process().errorText(), "");
}

TEST_F(ServeLifetimeTest, CanBeInterruptedWhileItsReaderIsSlow)
{
    client.process().sendUntilStuck(client.request("subscriptions") + '\n');

    client.process().signal(SIGINT);

    EXPECT_EQ(client.process().status(), 130);
}

TEST_F(ServeLifetimeTest, WritesEverythingToASlowReader)
{
    std::string text;
    const auto line = client.request("nonsense") + '\n';
    client.process().sendUntilStuck(line);
    client.process().closeInput();

    std::size_t answers = 0;
    while (const auto answer = client.process().nextLine()) {
        // The last request may have been cut.
        const auto code = JSON::parse(*answer)["error"]["code"];
        EXPECT_TRUE(code == -32601 || code == -32700);
        ++answers;
    }

    EXPECT_GT(answers, 100u);
    EXPECT_EQ(client.process().status(), 0);
}

TEST(ServeStandardDescriptorsTest, ComplainsWhenItsOutputIsClosed)
{
    ZefProcess process({ "serve" }, { .closed = { 1 } });
    process.send("{}\n");

    EXPECT_EQ(process.status(), 1);
    EXPECT_EQ(process.errorText(), "zef: standard output: Bad file descriptor\n");
}

TEST(ServeStandardDescriptorsTest, TakesAClosedInputForOneThatHasEnded)
{
    ZefProcess process({ "serve" }, { .closed = { 0 } });

    EXPECT_EQ(process.status(), 0);
    EXPECT_EQ(process.errorText(), "zef: standard input: Bad file descriptor\n");
}

} // namespace

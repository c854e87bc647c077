// SPDX-License-Identifier: MIT
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>

namespace {

using JSON = ServeClient::JSON;

/// `zef trash`, and the method of the server, with a home trash of the test's own.
class TrashCommandTest : public testing::Test {
protected:
    static ZefProcess::Result trash(std::vector<std::string> paths)
    {
        paths.insert(paths.begin(), "trash");
        return ZefProcess::run(paths);
    }

    static std::string line(const std::string& path, const std::string& reason)
    {
        return "zef: " + path + ": " + reason + "\n";
    }

    TemporaryFolder folder;
    EnvironmentVariable dataHome{ "XDG_DATA_HOME", folder.path("data") };
};

TEST_F(TrashCommandTest, MovesFilesWithoutAWord)
{
    folder.write("a");
    folder.makeFolder("d");
    folder.write("d/b");

    const auto result = trash({ folder.path("a"), folder.path("d") + "/" });

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(folder.exists("data/Trash/files/a"));
    EXPECT_TRUE(folder.exists("data/Trash/files/d/b"));
    EXPECT_FALSE(folder.exists("a"));
}

TEST_F(TrashCommandTest, TellsOfTheRefusedFileAndMovesNone)
{
    folder.write("a");

    const auto result = trash({ folder.path("a"), "/" });

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, line("/", "it is the root of all files"));
    EXPECT_TRUE(folder.exists("a"));
}

TEST_F(TrashCommandTest, TellsOfAPathThatLeadsNowhereAndMovesTheRest)
{
    folder.write("a");

    const auto result = trash({ folder.path("missing"), folder.path("a") });

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, line(folder.path("missing"), "No such file or directory"));
    EXPECT_TRUE(folder.exists("data/Trash/files/a"));
}

TEST_F(TrashCommandTest, NamesTheRightPathBesideOneThatLeadsNowhere)
{
    folder.write("a");

    const auto result = trash({ folder.path("missing"), folder.path("a"), "/" });

    EXPECT_EQ(result.errors,
        line(folder.path("missing"), "No such file or directory")
            + line("/", "it is the root of all files"));
}

TEST_F(TrashCommandTest, WantsAPath)
{
    EXPECT_EQ(trash({}).status, 2);
}

TEST_F(TrashCommandTest, ServesOtherPrograms)
{
    folder.write("a");
    ServeClient client;
    const auto id = client.call("fileItem", { { "path", folder.path("a") } })["id"];

    EXPECT_EQ(client.call("moveFilesToTrash", { { "ids", JSON::array({ id }) } }), true);

    EXPECT_TRUE(folder.exists("data/Trash/files/a"));
}

TEST_F(TrashCommandTest, AnswersOtherProgramsFalseWhenItIsRefused)
{
    folder.write("a");
    ServeClient client;
    const auto id = client.call("fileItem", { { "path", folder.path("a") } })["id"];
    const auto root = client.call("fileItem", { { "path", "/" } })["id"];

    EXPECT_EQ(client.call("moveFilesToTrash", { { "ids", JSON::array({ id, root }) } }), false);

    EXPECT_TRUE(folder.exists("a"));
}

TEST_F(TrashCommandTest, TakesAnEmptyListForDoneAndNoListForAnError)
{
    constexpr int wrongParameters = -32602;
    ServeClient client;

    EXPECT_EQ(client.call("moveFilesToTrash", { { "ids", JSON::array() } }), true);
    EXPECT_EQ(client.errorCode("moveFilesToTrash"), wrongParameters);
    EXPECT_EQ(client.errorCode("moveFilesToTrash", { { "ids", JSON::array({ 12345 }) } }),
        wrongParameters);
}

} // namespace

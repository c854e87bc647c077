// SPDX-License-Identifier: MIT
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>

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

    std::set<std::string> namesIn(const std::string& name) const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path(name)))
            names.insert(entry.path().filename());
        return names;
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

TEST_F(TrashCommandTest, ShowsTheNameOfARefusedFileFitForATerminal)
{
    const std::string name = "a\n\x1b[31m";
    for (const auto* made : { "data", "data/Trash", "data/Trash/files" })
        folder.makeFolder(made);
    folder.write("data/Trash/files/" + name);

    const auto result = trash({ folder.path("data/Trash/files/" + name) });

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
        line(folder.path("data/Trash/files/a\\n\\x1b[31m"), "it is in the trash already"));
}

TEST_F(TrashCommandTest, MovesALinkItselfUnlessASlashAsksForItsFolder)
{
    folder.makeFolder("d");
    folder.symlink("d", "link");
    folder.symlink("nowhere", "dangling");

    EXPECT_EQ(trash({ folder.path("dangling") }).status, 0);
    EXPECT_EQ(trash({ folder.path("link") + "/" }).status, 0);
    EXPECT_FALSE(folder.exists("d"));
    EXPECT_EQ(trash({ folder.path("link") }).status, 0);

    for (const auto* name : { "dangling", "d", "link" })
        EXPECT_TRUE(folder.exists(std::string("data/Trash/files/") + name)) << name;
}

TEST_F(TrashCommandTest, TakesEveryNameAsItIs)
{
    const ZefProcess::Settings inFolder{ .folder = folder.path() };
    for (const auto* name : { "-x", "--plain", "[a,b]" })
        folder.write(name);

    EXPECT_EQ(ZefProcess::run({ "trash", "--", "-x", "--plain", "[a,b]" }, {}, inFolder).status, 0);

    for (const auto* name : { "-x", "--plain", "[a,b]" })
        EXPECT_TRUE(folder.exists(std::string("data/Trash/files/") + name)) << name;
}

TEST_F(TrashCommandTest, TwoProgramsGiveFilesOfOneNameNamesOfTheirOwn)
{
    constexpr int count = 40;
    std::vector<std::unique_ptr<ZefProcess>> programs;
    for (const std::string name : { "mine", "others" }) {
        std::vector<std::string> arguments{ "trash" };
        folder.makeFolder(name);
        for (int number = 0; number < count; ++number) {
            const auto file = name + "/" + std::to_string(number);
            folder.write(file, file);
            arguments.push_back(folder.path(file));
        }
        programs.push_back(std::make_unique<ZefProcess>(arguments));
    }

    for (const auto& program : programs)
        EXPECT_EQ(program->status(), 0) << program->errorText();

    std::set<std::string> contents;
    for (const auto& name : namesIn("data/Trash/files")) {
        contents.insert(folder.contents("data/Trash/files/" + name));
        EXPECT_TRUE(folder.exists("data/Trash/info/" + name + ".trashinfo")) << name;
    }
    EXPECT_EQ(contents.size(), std::size_t{ 2 * count });
}

TEST_F(TrashCommandTest, OfTwoProgramsThatAreAskedForTheSameFileOneMovesIt)
{
    folder.write("a");
    ZefProcess one({ "trash", folder.path("a") });
    ZefProcess other({ "trash", folder.path("a") });

    EXPECT_EQ(one.status() + other.status(), 1);
    // Under a name that depends on who came first.
    EXPECT_EQ(namesIn("data/Trash/files").size(), 1u);
    EXPECT_EQ(namesIn("data/Trash/info").size(), 1u);
}

TEST_F(TrashCommandTest, TellsSubscribersOfOtherProgramsBeforeItAnswers)
{
    folder.makeFolder("watched");
    folder.write("watched/a");
    ServeClient client;
    client.call("settings", { { "paused", true } });
    client.call("subscribe", { { "subscriber", "s" }, { "path", folder.path("watched") } });
    const auto id = client.call("fileItem", { { "path", folder.path("watched/a") } })["id"];

    EXPECT_EQ(client.call("moveFilesToTrash", { { "ids", JSON::array({ id }) } }), true);

    EXPECT_EQ(client.takeNotifications("directorySubscription.foundChanges").size(), 1u);
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

// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using JSON = ServeClient::JSON;
using Names = std::vector<std::string>;

constexpr auto updatedNumberOfFilesFound = "asynchronousFileLoader.updatedNumberOfFilesFound";
constexpr auto finishedFindingFiles = "asynchronousFileLoader.finishedFindingFiles";
constexpr int wrongParameters = -32602;

class ServeFileLoaderTest : public testing::Test {
protected:
    /// A folder, a hidden one, a package and a link, each with a file in it.
    ServeFileLoaderTest()
    {
        for (const std::string name : { "a", ".hidden", "Tool.app" }) {
            folder.makeFolder(name);
            folder.write(name + "/file");
        }
        folder.symlink("a", "link");
    }

    static JSON itemAt(ServeClient& server, const std::string& path)
    {
        return server.call("fileItem", { { "path", path } });
    }

    JSON idAt(const std::string& name) { return itemAt(client, folder.path(name))["id"]; }

    JSON load(const JSON& parameters) { return client.call("load", parameters)["loader"]; }

    /// The names in the folder of all files of the next load that comes to its end.
    Names found()
    {
        Names names;
        const auto finished = client.nextNotification(finishedFindingFiles);
        for (const auto& file : finished["files"]) {
            const auto path = file["path"].get<std::string>();
            names.push_back(path.substr(std::min(path.size(), folder.path().size() + 1)));
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// What a load with these parameters finds that begins with the folder.
    Names foundWith(JSON parameters)
    {
        parameters["ids"] = JSON::array({ idAt("") });
        parameters["depth"] = -1;
        load(parameters);
        return found();
    }

    int errorOfLoad(const JSON& parameters) { return client.errorCode("load", parameters); }

    TemporaryFolder folder;
    ServeClient client;
};

TEST_F(ServeFileLoaderTest, LoadsOneFolderAlone)
{
    load({ { "id", idAt("") } });

    EXPECT_EQ(found(), Names({ ".hidden", "Tool.app", "a", "link" }));
}

TEST_F(ServeFileLoaderTest, LoadsFilesAndWhatIsBeneathThem)
{
    load(
        { { "ids", JSON::array({ idAt("a"), idAt("Tool.app"), idAt("link") }) }, { "depth", -1 } });

    EXPECT_EQ(found(), Names({ "Tool.app", "Tool.app/file", "a", "a/file", "link" }));
}

TEST_F(ServeFileLoaderTest, LoadsAsDeepAsItIsTold)
{
    load({ { "ids", JSON::array({ idAt("") }) }, { "depth", 1 } });
    EXPECT_EQ(found(), Names({ "", ".hidden", "Tool.app", "a", "link" }));

    load({ { "ids", JSON::array({ idAt("") }) }, { "depth", 0 } });
    EXPECT_EQ(found(), Names({ "" }));

    load({ { "ids", JSON::array({ idAt("") }) }, { "depth", -2.0 } });
    EXPECT_EQ(found(), Names({ "" }));
}

TEST_F(ServeFileLoaderTest, CompletesALoadOfNothing)
{
    load({ { "ids", JSON::array() }, { "depth", -1 } });

    EXPECT_EQ(client.nextNotification(finishedFindingFiles)["files"], JSON::array());
}

TEST_F(ServeFileLoaderTest, NumbersEveryLoadAnew)
{
    const auto id = idAt("a");

    EXPECT_EQ(load({ { "id", id } }), 1);
    EXPECT_EQ(load({ { "id", id } }), 2);

    std::vector<int> numbers;
    for (int count = 0; count < 2; ++count)
        numbers.push_back(client.nextNotification(finishedFindingFiles)["loader"]);
    std::sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers, std::vector<int>({ 1, 2 }));
}

TEST_F(ServeFileLoaderTest, TellsHowManyFilesItFoundBeforeItTellsThemAll)
{
    const auto loader = load({ { "id", idAt("") } });

    const auto finished = client.nextNotification(finishedFindingFiles);
    const auto updates = client.takeNotifications(updatedNumberOfFilesFound);

    ASSERT_FALSE(updates.empty());
    EXPECT_EQ(updates.back()["loader"], loader);
    EXPECT_EQ(updates.back()["count"], 4);
    EXPECT_EQ(updates.back()["latestFile"], finished["files"].back());
}

TEST_F(ServeFileLoaderTest, TellsOfNoLatestFileBeforeTheFirst)
{
    folder.makeFolder("empty");
    load({ { "id", idAt("empty") } });

    const auto update = client.nextNotification(updatedNumberOfFilesFound);

    EXPECT_EQ(update["count"], 0);
    EXPECT_TRUE(update["latestFile"].is_null());
}

TEST_F(ServeFileLoaderTest, GivesEachFileAsAnItem)
{
    load({ { "id", idAt("a") } });

    const auto files = client.nextNotification(finishedFindingFiles)["files"];

    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0]["id"], idAt("a/file"));
    EXPECT_EQ(files[0]["url"], folder.url("a/file").absoluteString());
    EXPECT_EQ(files[0]["class"], "ZEFBasicInfoFileItem");
    EXPECT_EQ(files[0].size(), 9u);
}

TEST_F(ServeFileLoaderTest, TakesEveryFileWithoutAFileFilter)
{
    const Names all{ "", ".hidden", ".hidden/file", "Tool.app", "Tool.app/file", "a", "a/file",
        "link" };

    EXPECT_EQ(foundWith({}), all);
    EXPECT_EQ(foundWith({ { "fileFilter", nullptr } }), all);
    EXPECT_EQ(foundWith({ { "fileFilter", "none" }, { "directoryFilter", "all" } }), all);
    EXPECT_EQ(foundWith({ { "fileFilter", "all" }, { "directoryFilter", nullptr } }), all);
}

TEST_F(ServeFileLoaderTest, LeavesOutWhatIsHiddenWithTheVisibleFilter)
{
    EXPECT_EQ(foundWith({ { "fileFilter", "visible" } }),
        Names({ "", ".hidden/file", "Tool.app", "Tool.app/file", "a", "a/file", "link" }));
    load({ { "id", idAt("") }, { "fileFilter", "visible" } });
    EXPECT_EQ(found(), Names({ "Tool.app", "a", "link" }));
}

TEST_F(ServeFileLoaderTest, LooksIntoNoHiddenFolderAndNoPackageWithTheNormalFilter)
{
    EXPECT_EQ(foundWith({ { "directoryFilter", "normal" } }),
        Names({ "", ".hidden", "Tool.app", "a", "a/file", "link" }));
}

TEST_F(ServeFileLoaderTest, LooksIntoNoFolderWithoutADirectoryFilter)
{
    EXPECT_EQ(foundWith({ { "directoryFilter", "none" } }), Names({ "" }));
    load({ { "id", idAt("a") }, { "directoryFilter", "none" } });
    EXPECT_EQ(found(), Names({ "a/file" }));
}

TEST_F(ServeFileLoaderTest, RefusesWrongParameters)
{
    const auto id = idAt("a");

    EXPECT_EQ(errorOfLoad(JSON::object()), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", id }, { "ids", JSON::array({ id }) } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", id }, { "depth", 1 } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "ids", JSON::array({ id }) } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "ids", id }, { "depth", 1 } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", { id } } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", 4711 } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", id }, { "fileFilter", "normal" } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", id }, { "fileFilter", "" } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", id }, { "fileFilter", 1 } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", id }, { "directoryFilter", "visible" } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", id }, { "directoryFilter", false } }), wrongParameters);
    EXPECT_EQ(load({ { "id", id } }), 1);
}

TEST_F(ServeFileLoaderTest, RefusesDepthsThatAreNoWholeNumbers)
{
    const auto id = idAt("a");

    for (const JSON& depth : { JSON("1"), JSON(1.5), JSON(true), JSON(nullptr), JSON(1e300),
             JSON(std::uint64_t{ 1 } << 63), JSON::array() })
        EXPECT_EQ(
            errorOfLoad({ { "ids", JSON::array({ id }) }, { "depth", depth } }), wrongParameters)
            << depth;
}

TEST_F(ServeFileLoaderTest, RefusesAListWithAnythingButLivingItems)
{
    const auto id = idAt("a");

    for (const JSON& other : { JSON("1"), JSON(-1), JSON(4711), JSON(nullptr), JSON::array() }) {
        const JSON parameters{ { "ids", JSON::array({ id, other }) }, { "depth", 1 } };
        EXPECT_EQ(errorOfLoad(parameters), wrongParameters) << other;
    }
}

TEST_F(ServeFileLoaderTest, RefusesFiltersThatKnowMoreThanPlainItems)
{
    const auto withInfo = idAt("a");
    client.call("settings", { { "fileClass", "ZEFFileItem" } });
    folder.makeFolder("plain");
    const auto plain = idAt("plain");

    EXPECT_EQ(errorOfLoad({ { "id", plain }, { "fileFilter", "visible" } }), wrongParameters);
    EXPECT_EQ(errorOfLoad({ { "id", plain }, { "directoryFilter", "normal" } }), wrongParameters);
    EXPECT_EQ(errorOfLoad(
                  { { "ids", { withInfo, plain } }, { "depth", -1 }, { "fileFilter", "visible" } }),
        wrongParameters);
    EXPECT_EQ(load({ { "id", plain }, { "fileFilter", "all" } }), 1);
}

TEST_F(ServeFileLoaderTest, MakesItemsOfTheClassOfTheFolder)
{
    ServeClient plain({ "--plain" });
    const auto id = itemAt(plain, folder.path("a"))["id"];
    plain.call("load", { { "id", id } });

    const auto files = plain.nextNotification(finishedFindingFiles)["files"];

    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0]["class"], "ZEFFileItem");
}

TEST_F(ServeFileLoaderTest, LogsAFolderThatCannotBeListedAndFindsNothing)
{
    load({ { "id", idAt("a/file") } });

    EXPECT_EQ(client.nextNotification(finishedFindingFiles)["files"], JSON::array());
    const auto logged = client.nextNotification("log")["message"].get<std::string>();
    EXPECT_EQ(logged,
        "ZEFFileLoadOperation encountered error -1407 opening iterator to get the directory "
        "contents at "
            + folder.url("a/file").absoluteString() + "/");
}

TEST_F(ServeFileLoaderTest, CancelsALoad)
{
    const auto first = client.request(
        "load", { { "ids", JSON::array({ idAt("") }) }, { "depth", -1 } });
    // Both requests are waiting at once, so that no timer comes in between.
    client.sendLine(first + '\n' + client.request("cancelLoad", { { "loader", 1 } }));
    EXPECT_EQ(client.nextAnswer()["result"]["loader"], 1);

    const auto state = client.nextAnswer()["result"];

    EXPECT_EQ(state, JSON({ { "isLoading", false }, { "isComplete", false } }));
    load({ { "id", idAt("a") } });
    EXPECT_EQ(client.nextNotification(finishedFindingFiles)["loader"], 2);
    for (const auto& update : client.takeNotifications(updatedNumberOfFilesFound))
        EXPECT_EQ(update["loader"], 2);
}

TEST_F(ServeFileLoaderTest, TellsThatALoadIsComplete)
{
    const auto loader = load({ { "id", idAt("a") } });
    client.nextNotification(finishedFindingFiles);

    EXPECT_EQ(client.call("cancelLoad", { { "loader", loader } }),
        JSON({ { "isLoading", false }, { "isComplete", true } }));
    EXPECT_EQ(client.call("cancelLoad", { { "loader", loader } })["isComplete"], true);
}

TEST_F(ServeFileLoaderTest, RefusesALoaderThatNeverWas)
{
    EXPECT_EQ(client.errorCode("cancelLoad", { { "loader", 1 } }), wrongParameters);
    EXPECT_EQ(client.errorCode("cancelLoad"), wrongParameters);
}

TEST_F(ServeFileLoaderTest, AnswersQuestionsAboutWhatWasFoundUntilTheLoadIsCancelled)
{
    const auto loader = load({ { "id", idAt("a") } });
    const auto id = client.nextNotification(finishedFindingFiles)["files"][0]["id"];

    EXPECT_EQ(client.call("currentPath", { { "id", id } }), folder.path("a/file"));
    client.call("cancelLoad", { { "loader", loader } });
    EXPECT_EQ(client.errorCode("currentPath", { { "id", id } }), wrongParameters);
}

TEST_F(ServeFileLoaderTest, KeepsWhatAClientHoldsWhenTheLoadIsCancelled)
{
    const auto loader = load({ { "id", idAt("a") } });
    const auto id = client.nextNotification(finishedFindingFiles)["files"][0]["id"];
    EXPECT_EQ(idAt("a/file"), id);

    client.call("cancelLoad", { { "loader", loader } });

    EXPECT_EQ(client.call("currentPath", { { "id", id } }), folder.path("a/file"));
}

TEST_F(ServeFileLoaderTest, ShutsDownWhileItLoads)
{
    const auto id = itemAt(client, "/usr")["id"];
    load({ { "ids", JSON::array({ id }) }, { "depth", -1 } });

    EXPECT_EQ(client.call("shutdown"), true);
    EXPECT_EQ(client.process().status(), 0);
    EXPECT_EQ(client.process().errorText(), "");
}

TEST_F(ServeFileLoaderTest, EndsWithItsInputWhileItLoads)
{
    const auto id = itemAt(client, "/usr")["id"];
    load({ { "ids", JSON::array({ id }) }, { "depth", -1 } });

    client.process().closeInput();

    EXPECT_EQ(client.process().status(), 0);
}

} // namespace

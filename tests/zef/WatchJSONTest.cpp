// SPDX-License-Identifier: MIT
#include "tests/support/WatchFixture.h"

#include <nlohmann/json.hpp>

#include <csignal>

namespace {

using JSON = nlohmann::json;

class WatchJSONTest : public WatchFixture {
protected:
    /// Watches `w`; a background load says by its last notification that it has begun.
    void watchJSON(const std::vector<std::string>& options = {})
    {
        std::vector<std::string> arguments{ "--json", "--async", folder.path("w") };
        arguments.insert(arguments.begin(), options.begin(), options.end());
        start(arguments);
        while (!next()["changes"].empty()) { }
    }

    JSON next()
    {
        const auto line = process->nextLine();
        if (!line)
            throw std::runtime_error("the output has ended");
        return JSON::parse(*line);
    }

    /// The next record of this event.
    JSON nextRecord(const std::string& name)
    {
        for (;;) {
            const auto message = next();
            for (const auto& record : message["changes"]) {
                if (record["name"] == name)
                    return record;
            }
        }
    }
};

TEST_F(WatchJSONTest, WritesOneObjectForEachNotification)
{
    watchJSON();
    folder.write("w/a");

    const auto message = next();

    EXPECT_EQ(message.size(), 3u);
    EXPECT_EQ(message["folder"], folder.path("w"));
    EXPECT_EQ(message["url"], folder.folderUrl("w").absoluteString());
    ASSERT_EQ(message["changes"].size(), 2u);
    const auto& record = message["changes"][1];
    EXPECT_EQ(record.size(), 3u);
    EXPECT_EQ(record["event"], 16);
    EXPECT_EQ(record["name"], "appeared");
    const auto& file = record["file"];
    EXPECT_EQ(file.size(), 9u);
    EXPECT_EQ(file["class"], "ZEFBasicInfoFileItem");
    EXPECT_EQ(file["url"], folder.url("w/a").absoluteString());
    EXPECT_EQ(file["path"], folder.path("w/a"));
    EXPECT_EQ(file["isValid"], true);
    EXPECT_EQ(file["isBasicDirectory"], false);
    EXPECT_EQ(file["isSymlink"], false);
    EXPECT_TRUE(file["id"].is_number_unsigned());
    EXPECT_TRUE(file["device"].is_number_unsigned());
    EXPECT_TRUE(file["inode"].is_number_unsigned());
}

TEST_F(WatchJSONTest, WritesOfPlainItemsWhenAskedTo)
{
    watchJSON({ "--plain" });
    folder.write("w/a");

    EXPECT_EQ(nextRecord("appeared")["file"]["class"], "ZEFFileItem");
}

TEST_F(WatchJSONTest, NumbersEveryEventAndKeepsTheNumberOfTheFile)
{
    watchJSON();

    folder.write("w/a");
    auto record = nextRecord("appeared");
    const auto id = record["file"]["id"];
    folder.rename("w/a", "w/b");
    record = nextRecord("renamed");
    EXPECT_EQ(record["event"], 2);
    EXPECT_EQ(record["file"]["id"], id);
    EXPECT_EQ(record["file"]["path"], folder.path("w/b"));

    folder.rename("w", "v");
    record = nextRecord("movedInParent");
    EXPECT_EQ(record["event"], 32);
    EXPECT_EQ(record["file"]["path"], folder.path("v/b"));

    folder.rename("v/b", "c");
    record = nextRecord("moved");
    EXPECT_EQ(record["event"], 1);
    EXPECT_EQ(record["file"]["id"], id);
    EXPECT_EQ(record["file"]["path"], folder.path("c"));

    folder.write("v/d");
    nextRecord("appeared");
    folder.remove("v/d");
    record = nextRecord("removed");
    EXPECT_EQ(record["event"], 4);
    EXPECT_TRUE(record["file"]["path"].is_null());
    EXPECT_TRUE(record["file"]["url"].is_null());
    EXPECT_EQ(record["file"]["isValid"], false);

    folder.write("v/e");
    EXPECT_EQ(nextRecord("updated")["event"], 8);
}

TEST_F(WatchJSONTest, TellsTheNewPlaceOfTheFolderWithItsMove)
{
    watchJSON();
    folder.rename("w", "v");

    const auto message = next();

    EXPECT_EQ(message["folder"], folder.path("v"));
    EXPECT_EQ(message["changes"][0]["name"], "renamed");
    EXPECT_EQ(message["changes"][0]["file"]["path"], folder.path("v"));
}

TEST_F(WatchJSONTest, TellsWhereARemovedFolderWas)
{
    watchJSON();
    folder.remove("w");

    const auto message = next();

    EXPECT_EQ(message["folder"], folder.path("w"));
    EXPECT_EQ(message["changes"][0]["name"], "removed");
    EXPECT_EQ(process->status(), 1);
}

TEST_F(WatchJSONTest, WritesNamesThatAreNoTextExactlyInUrlsOnly)
{
    watchJSON();
    const std::string name = "w/\xff\n\x1b";
    folder.write(name);

    const auto file = nextRecord("appeared")["file"];

    EXPECT_EQ(file["url"], folder.url(name).absoluteString());
    EXPECT_EQ(file["path"], folder.path("w/\ufffd\n\x1b"));
}

TEST_F(WatchJSONTest, WritesNothingElseToStandardOutput)
{
    start({ "--json", folder.path("w"), folder.path("missing") });

    process->signal(SIGINT);

    EXPECT_EQ(process->rest(), "");
}

TEST_F(WatchJSONTest, WritesNoColorsToATerminal)
{
    start({ "--json", "--async", folder.path("w") },
        { .streams = ZefProcess::Streams::terminal, .environment = { { "TERM", "xterm" } } });

    EXPECT_EQ(next()["changes"], JSON::array());
}

} // namespace

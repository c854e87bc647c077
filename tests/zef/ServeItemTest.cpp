// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <set>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace {

using JSON = ServeClient::JSON;

class ServeItemTest : public testing::Test {
protected:
    JSON itemAt(const std::string& name)
    {
        return client.call("fileItem", { { "path", folder.path(name) } });
    }

    JSON idAt(const std::string& name) { return { { "id", itemAt(name)["id"] } }; }

    TemporaryFolder folder;
    ServeClient client;
};

TEST_F(ServeItemTest, DescribesAFileWithEveryFieldOfAnItem)
{
    const auto url = folder.write("a");

    const auto item = client.call("fileItem", { { "url", url.absoluteString() } });

    struct stat info { };
    ASSERT_EQ(::lstat(folder.path("a").c_str(), &info), 0);
    EXPECT_EQ(item,
        JSON({
            { "id", item["id"] },
            { "class", "ZEFBasicInfoFileItem" },
            { "url", url.absoluteString() },
            { "path", folder.path("a") },
            { "device", item["device"] },
            { "inode", info.st_ino },
            { "isValid", true },
            { "isBasicDirectory", false },
            { "isSymlink", false },
        }));
    EXPECT_TRUE(item["id"].is_number_unsigned());
    EXPECT_TRUE(item["device"].is_number_unsigned());
}

TEST_F(ServeItemTest, SaysWhatIsAFolderAndWhatIsALink)
{
    folder.makeFolder("sub");
    folder.symlink("sub", "link");

    EXPECT_EQ(itemAt("sub")["isBasicDirectory"], true);
    EXPECT_EQ(itemAt("sub")["isSymlink"], false);
    EXPECT_EQ(itemAt("link")["isBasicDirectory"], false);
    EXPECT_EQ(itemAt("link")["isSymlink"], true);
}

TEST_F(ServeItemTest, GivesAFileThatIsAskedForByPathAUrlWithASlash)
{
    const auto url = folder.write("a");

    EXPECT_EQ(itemAt("a")["url"], url.absoluteString() + "/");
}

TEST_F(ServeItemTest, SaysNullForAFileThatIsNotThere)
{
    EXPECT_TRUE(client.call("fileItem", { { "path", folder.path("missing") } }).is_null());
    EXPECT_TRUE(
        client.call("fileItem", { { "url", folder.url("missing").absoluteString() } }).is_null());
    EXPECT_TRUE(client.call("fileItem", { { "path", "" } }).is_null());
}

TEST_F(ServeItemTest, NeedsExactlyOneOfPathAndUrl)
{
    const auto url = folder.write("a").absoluteString();

    EXPECT_EQ(client.errorCode("fileItem"), -32602);
    EXPECT_EQ(
        client.errorCode("fileItem", { { "path", folder.path("a") }, { "url", url } }), -32602);
}

TEST_F(ServeItemTest, RefusesAUrlThatIsNoFileUrl)
{
    for (const auto* url :
        { "http://host/a", "/tmp", "", "file://elsewhere/tmp", "file:///tmp/%00" })
        EXPECT_EQ(client.errorCode("fileItem", { { "url", url } }), -32602) << url;
}

TEST_F(ServeItemTest, GivesOneFileOneNumberHoweverItIsAskedFor)
{
    const auto url = folder.write("a");
    folder.link("a", "b");

    const auto id = itemAt("a")["id"];

    EXPECT_EQ(itemAt("a")["id"], id);
    EXPECT_EQ(itemAt("b")["id"], id);
    EXPECT_EQ(client.call("fileItem", { { "url", url.absoluteString() } })["id"], id);
}

TEST_F(ServeItemTest, HoldsAnItemUntilItIsReleasedOnce)
{
    folder.write("a");
    const auto id = idAt("a");
    itemAt("a");

    EXPECT_EQ(client.call("item", id)["isValid"], true);
    EXPECT_EQ(client.call("releaseItem", id), true);
    EXPECT_EQ(client.errorCode("item", id), -32602);
    EXPECT_EQ(client.errorCode("releaseItem", id), -32602);
}

TEST_F(ServeItemTest, NeverGivesTheNumberOfADeadItemToAnother)
{
    folder.write("a");
    std::set<std::uint64_t> numbers;

    for (int round = 0; round < 20; ++round) {
        const auto id = idAt("a");
        EXPECT_TRUE(numbers.insert(id["id"].get<std::uint64_t>()).second);
        client.call("releaseItem", id);
    }
}

TEST_F(ServeItemTest, AnswersForAnItemThatNobodyHoldsAsLongAsASubscriptionKnowsIt)
{
    folder.write("a");
    client.call("subscribe", { { "subscriber", "s" }, { "path", folder.path() } });
    const auto id = idAt("a");

    client.call("releaseItem", id);

    EXPECT_EQ(client.call("item", id)["path"], folder.path("a"));
    folder.remove("a");
    client.call("checkFilesystem");
    EXPECT_EQ(client.errorCode("item", id), -32602);
}

TEST_F(ServeItemTest, TellsMoreOfAnItemWithoutALookAtTheDisk)
{
    folder.write("a");
    const auto id = idAt("a");
    folder.remove("a");

    const auto item = client.call("item", id);

    EXPECT_EQ(item["isValid"], true);
    EXPECT_EQ(item["path"], folder.path("a"));
    EXPECT_EQ(item["refValid"], true);
    EXPECT_EQ(item["usingKQueue"], false);
    EXPECT_TRUE(item["hash"].is_number_unsigned());
    EXPECT_TRUE(item["fileiNodeHash"].is_number_unsigned());
    EXPECT_EQ(item["description"].get<std::string>().rfind("<ZEFBasicInfoFileItem: 0x", 0), 0u);
}

TEST_F(ServeItemTest, ComputesTheTwoHashesFromTheNumbers)
{
    folder.write("a");
    const auto item = client.call("item", idAt("a"));
    const auto inode = item["inode"].get<std::uint64_t>();
    if (inode > UINT32_MAX)
        GTEST_SKIP() << "the file system gave the file a number of more than 32 bits";

    const auto rotated = static_cast<std::uint32_t>(inode << 16 | inode >> 16);
    EXPECT_EQ(item["hash"], rotated ^ item["device"].get<std::uint32_t>());
    EXPECT_EQ(item["fileiNodeHash"], inode << 16 | inode >> 16);
}

TEST_F(ServeItemTest, FindsAFileAgainThatWasRenamed)
{
    folder.write("a");
    const auto id = idAt("a");
    folder.rename("a", "b");

    EXPECT_EQ(client.call("item", id)["path"], folder.path("a"));
    EXPECT_EQ(client.call("currentURL", id), folder.url("b").absoluteString());
    EXPECT_EQ(client.call("currentPath", id), folder.path("b"));
    EXPECT_EQ(client.call("item", id)["path"], folder.path("b"));
}

TEST_F(ServeItemTest, SaysNullForTheUrlAndThePathOfALostFile)
{
    folder.write("a");
    const auto id = idAt("a");
    folder.remove("a");

    EXPECT_TRUE(client.call("currentURL", id).is_null());
    EXPECT_TRUE(client.call("currentPath", id).is_null());
    const auto item = client.call("item", id);
    EXPECT_EQ(item["isValid"], false);
    EXPECT_TRUE(item["url"].is_null());
    EXPECT_TRUE(item["path"].is_null());
    EXPECT_NE(item["description"].get<std::string>().find("URL: (null)"), std::string::npos);
}

TEST_F(ServeItemTest, GivesTheModificationDateInSecondsSince1970)
{
    folder.write("a");
    folder.setModificationTime("a", 1'000'000'000);
    const auto id = idAt("a");

    EXPECT_EQ(client.call("modificationDate", id), 1'000'000'000.0);
}

TEST_F(ServeItemTest, KnowsTheCurrentModificationDateAfterAChangeOrAQuestion)
{
    folder.write("a");
    folder.setModificationTime("a", 1'000'000'000);
    const auto id = idAt("a");

    EXPECT_TRUE(client.call("currentModificationDate", id).is_null());
    folder.setModificationTime("a", 1'000'000'001);
    EXPECT_EQ(client.call("currentModificationDate", id), 1'000'000'001.0);
    EXPECT_EQ(client.call("modificationDate", id), 1'000'000'001.0);
}

TEST_F(ServeItemTest, ShowsBytesThatAreNoTextAsReplacementsInPathsAndExactlyInUrls)
{
    const std::string name = "a\xff\xc3z";
    const auto url = folder.write(name).absoluteString();

    const auto item = client.call("fileItem", { { "url", url } });

    EXPECT_EQ(item["url"], url);
    EXPECT_EQ(url.substr(url.size() - 8), "a%FF%C3z");
    EXPECT_EQ(item["path"], folder.path("a\ufffd\ufffdz"));
    EXPECT_EQ(client.call("currentPath", { { "id", item["id"] } }), item["path"]);
}

TEST_F(ServeItemTest, RefusesNumbersThatAreNoItem)
{
    for (const auto& id : { JSON(0), JSON(999), JSON(-1), JSON(1.5), JSON(1e300), JSON("1"), JSON(),
             JSON::array(), JSON(true) }) {
        EXPECT_EQ(client.errorCode("item", { { "id", id } }), -32602) << id;
        EXPECT_EQ(client.errorCode("currentURL", { { "id", id } }), -32602) << id;
    }
    EXPECT_EQ(client.errorCode("item"), -32602);
}

TEST_F(ServeItemTest, TakesAWholeNumberThatIsWrittenWithAFraction)
{
    folder.write("a");
    const auto id = itemAt("a")["id"].get<double>();

    EXPECT_EQ(client.call("item", { { "id", id } })["path"], folder.path("a"));
}

TEST_F(ServeItemTest, RefusesANulInAPath)
{
    folder.write("a");

    const std::string path = folder.path("a") + std::string(1, '\0') + "b";

    EXPECT_EQ(client.errorCode("fileItem", { { "path", path } }), -32602);
}

TEST_F(ServeItemTest, RefusesAPathThatIsNoUnicode)
{
    const auto begin = R"({"jsonrpc":"2.0","id":7,"method":"fileItem","params":{"path":"/tmp/)";

    for (const auto* name :
        { "\xff", "a\xc3", "\xed\xa0\x80", R"(\ud800)", R"(\udc80)", R"(\udc00\ud800)" }) {
        client.sendLine(begin + std::string(name) + "\"}}");
        const auto answer = client.nextAnswer();
        EXPECT_EQ(answer["id"], 7);
        EXPECT_EQ(answer["error"]["code"], -32602) << name;
    }
}

TEST_F(ServeItemTest, TakesEveryCharacterThatJsonCanWrite)
{
    folder.write("\U0001f4c1");

    client.sendLine(R"({"jsonrpc":"2.0","id":7,"method":"fileItem","params":{"path":")"
        + folder.path() + R"(/\ud83d\udcc1"}})");

    EXPECT_EQ(client.nextAnswer()["result"]["path"], folder.path("\U0001f4c1"));
}

} // namespace

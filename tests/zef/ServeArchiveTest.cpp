// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using JSON = ServeClient::JSON;

class ServeArchiveTest : public testing::Test {
protected:
    JSON idAt(const std::string& name)
    {
        const auto item = client.call("fileItem", { { "path", folder.path(name) } });
        return { { "id", item["id"] } };
    }

    JSON archiveAt(const std::string& name) { return client.call("archiveDictionary", idAt(name)); }

    static JSON itemOf(ServeClient& server, const JSON& archive)
    {
        return server.call("fileItemForArchiveDictionary", { { "archive", archive } });
    }

    int errorCodeOf(const JSON& archive)
    {
        return client.errorCode("fileItemForArchiveDictionary", { { "archive", archive } });
    }

    TemporaryFolder folder;
    ServeClient client;
};

TEST_F(ServeArchiveTest, GivesTheThreeEntriesOfAnArchive)
{
    folder.write("a");

    const auto archive = archiveAt("a");

    EXPECT_EQ(archive.size(), 3u);
    EXPECT_EQ(archive["ZEFArchivePathKey"], folder.path("a"));
    EXPECT_EQ(archive["ZEFArchiveIsAliasKey"], false);
    EXPECT_TRUE(archive["ZEFArchiveDataKey"].is_string());
}

TEST_F(ServeArchiveTest, HasNoArchiveOfALostFile)
{
    folder.write("a");
    const auto id = idAt("a");
    folder.remove("a");
    client.call("currentPath", id);

    EXPECT_TRUE(client.call("archiveDictionary", id).is_null());
}

TEST_F(ServeArchiveTest, GivesTheSameItemBackWhileThatLives)
{
    folder.write("a");
    const auto id = idAt("a");
    const auto archive = client.call("archiveDictionary", id);
    folder.rename("a", "b");

    EXPECT_EQ(itemOf(client, archive)["id"], id["id"]);
}

TEST_F(ServeArchiveTest, FindsARenamedFileInAnotherRun)
{
    folder.write("a");
    const auto archive = archiveAt("a");
    folder.rename("a", "b");
    ServeClient later;

    const auto item = itemOf(later, archive);

    EXPECT_EQ(item["path"], folder.path("b"));
    EXPECT_EQ(item["class"], "ZEFBasicInfoFileItem");
}

TEST_F(ServeArchiveTest, HoldsTheItemUntilItIsReleased)
{
    folder.write("a");
    const auto archive = archiveAt("a");
    ServeClient later;

    const JSON id{ { "id", itemOf(later, archive)["id"] } };

    EXPECT_EQ(itemOf(later, archive)["id"], id["id"]);
    EXPECT_EQ(later.call("item", id)["path"], folder.path("a"));
    EXPECT_EQ(later.call("releaseItem", id), true);
    EXPECT_EQ(later.errorCode("item", id), -32602);
}

TEST_F(ServeArchiveTest, SaysNullForAFileThatIsGone)
{
    folder.write("a");
    const auto archive = archiveAt("a");
    folder.remove("a");

    EXPECT_TRUE(itemOf(client, archive).is_null());
}

TEST_F(ServeArchiveTest, SaysNullForEmptyDataAndForAnEmptyArchive)
{
    folder.write("a");

    EXPECT_TRUE(
        itemOf(client, { { "ZEFArchivePathKey", folder.path("a") }, { "ZEFArchiveDataKey", "" } })
            .is_null());
    EXPECT_TRUE(itemOf(client, JSON::object()).is_null());
}

TEST_F(ServeArchiveTest, FindsAFileByItsPathWhereTheDataLeadNowhere)
{
    folder.write("a");

    const JSON path{ { "ZEFArchivePathKey", folder.path("a") } };
    auto strange = path;
    strange["ZEFArchiveDataKey"] = "AAAA";

    EXPECT_EQ(itemOf(client, path)["path"], folder.path("a"));
    EXPECT_EQ(itemOf(client, strange)["path"], folder.path("a"));
}

TEST_F(ServeArchiveTest, FindsAnAliasByItsPathAlone)
{
    folder.write("a");
    folder.symlink("a", "link");
    const auto archive = archiveAt("link");
    folder.rename("link", "renamed");
    ServeClient later;

    EXPECT_EQ(archive["ZEFArchiveIsAliasKey"], true);
    EXPECT_TRUE(itemOf(later, archive).is_null());
    folder.rename("renamed", "link");
    EXPECT_EQ(itemOf(later, archive)["isSymlink"], true);
}

TEST_F(ServeArchiveTest, FindsAnAliasWhoseNameIsNoTextByItsUrl)
{
    const std::string name = "link\xff";
    folder.symlink("a", name);
    const auto url = folder.url(name).absoluteString();
    const auto id = client.call("fileItem", { { "url", url } })["id"];
    const auto archive = client.call("archiveDictionary", { { "id", id } });
    ServeClient later;

    EXPECT_EQ(archive["ZEFArchivePathURL"], url);
    const auto found = itemOf(later, archive)["url"].get<std::string>();
    EXPECT_EQ(found.substr(0, url.size()), url);
}

TEST_F(ServeArchiveTest, RefusesWhatIsNoArchive)
{
    EXPECT_EQ(client.errorCode("fileItemForArchiveDictionary"), -32602);
    for (const auto& archive :
        { JSON(1), JSON("text"), JSON::array(), JSON({ { "ZEFArchivePathKey", 1 } }),
            JSON({ { "ZEFArchivePathKey", std::string("/tmp\0x", 6) } }),
            JSON({ { "ZEFArchivePathURL", "http://host/" } }),
            JSON({ { "ZEFArchiveDataKey", true } }), JSON({ { "ZEFArchiveDataKey", "AB==" } }),
            JSON({ { "ZEFArchiveDataKey", "AA" } }), JSON({ { "ZEFArchiveIsAliasKey", "no" } }) })
        EXPECT_EQ(errorCodeOf(archive), -32602) << archive;
}

TEST_F(ServeArchiveTest, RefusesAnArchiveWhosePathIsNoUnicode)
{
    const auto code = client.errorCodeOfLine(
        R"({"jsonrpc":"2.0","id":7,"method":"fileItemForArchiveDictionary","params":{"archive":)"
        R"({"ZEFArchivePathKey":"/tmp/\udcff"}}})");

    EXPECT_EQ(code, -32602);
}

TEST_F(ServeArchiveTest, GivesPlainItemsArchivesWithoutTheAliasEntry)
{
    folder.write("a");
    ServeClient plain({ "--plain" });
    const auto id = plain.call("fileItem", { { "path", folder.path("a") } })["id"];

    const auto archive = plain.call("archiveDictionary", { { "id", id } });

    EXPECT_EQ(archive.size(), 2u);
    EXPECT_EQ(itemOf(plain, archive)["id"], id);
}

} // namespace

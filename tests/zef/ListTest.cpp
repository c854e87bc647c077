// SPDX-License-Identifier: MIT
#include "tests/support/ArchiveFixture.h"
#include "tests/support/ServeClient.h"

#include <algorithm>

namespace {

class ListTest : public ArchiveFixture {
protected:
    ListTest()
    {
        folder.makeFolder("a");
        folder.write("a/inside");
        folder.write("b\nc");
        folder.write(".hidden");
    }

    ZefProcess::Result list(const std::string& path, Names options = {})
    {
        options.insert(options.begin(), "list");
        options.push_back(path);
        return ZefProcess::run(options, {}, settings);
    }

    static Names sortedLines(const ZefProcess::Result& result)
    {
        auto found = lines(result.output);
        std::sort(found.begin(), found.end());
        return found;
    }

    void expectFailure(const std::string& path, const std::string& reason)
    {
        const auto result = list(path);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "zef: " + path + ": " + reason + "\n");
        EXPECT_EQ(result.status, 1);
    }

    JSON filesInDirectory(const std::string& name)
    {
        const auto item = client.call("fileItem", { { "path", folder.path(name) } });
        return client.call("filesInDirectory", { { "id", item["id"] } });
    }

    ServeClient client;
};

TEST_F(ListTest, PrintsTheContentsOfAFolderAlone)
{
    const auto result = list(folder.path());

    EXPECT_EQ(sortedLines(result),
        Names({ folder.path(".hidden"), folder.path("a"), folder.path("b\\nc") }));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ListTest, PrintsNothingOfAnEmptyFolder)
{
    folder.makeFolder("empty");

    const auto result = list(folder.path("empty"));

    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ListTest, PrintsAnItemALineAsJSON)
{
    const auto items = objects(list(folder.path("a"), { "--json" }).output);
    const auto plain = objects(list(folder.path("a"), { "--json", "--plain" }).output);

    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0]["url"], folder.url("a/inside").absoluteString());
    EXPECT_EQ(items[0]["class"], "ZEFBasicInfoFileItem");
    ASSERT_EQ(plain.size(), 1u);
    EXPECT_EQ(plain[0]["class"], "ZEFFileItem");
}

TEST_F(ListTest, FollowsALinkToAFolder)
{
    folder.symlink("a", "link");

    EXPECT_EQ(list(folder.path("link")).output, folder.path("a/inside") + "\n");
}

TEST_F(ListTest, SaysWhatCannotBeListed)
{
    expectFailure(folder.path("missing"), "No such file or directory");
    expectFailure(folder.path(".hidden"), "Not a directory");
    settings.withoutPrivileges = true;
    for (const auto mode : { 0000u, 0400u, 0100u }) {
        folder.chmod("a", mode);
        expectFailure(folder.path("a"), "Permission denied");
    }
}

TEST_F(ListTest, ServesTheContentsOfAFolder)
{
    const auto files = filesInDirectory("a");

    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0]["url"], folder.url("a/inside").absoluteString());
}

TEST_F(ListTest, ServesTheItemsThatASubscriptionKnows)
{
    const auto subscription = client.call(
        "subscribe", { { "subscriber", "s" }, { "path", folder.path("a") } });

    const auto known = client.call(
        "subscription", { { "subscription", subscription["subscription"] } });

    EXPECT_EQ(filesInDirectory("a"), known["files"]);
}

TEST_F(ListTest, ServesNothingOfWhatIsNoFolder)
{
    EXPECT_EQ(filesInDirectory(".hidden"), JSON::array());
    EXPECT_EQ(client.errorCode("filesInDirectory", { { "id", 4711 } }), -32602);
    EXPECT_EQ(client.errorCode("filesInDirectory"), -32602);
}

} // namespace

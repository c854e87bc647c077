// SPDX-License-Identifier: MIT
#include "tests/support/ArchiveFixture.h"

#include <algorithm>
#include <cstdlib>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

class FindTest : public ArchiveFixture {
protected:
    ZefProcess::Result find(Names arguments)
    {
        arguments.insert(arguments.begin(), "find");
        return ZefProcess::run(arguments, {}, settings);
    }

    /// The names in the folder of everything that was found, sorted; the folder's own is empty.
    Names found(Names options = {})
    {
        options.push_back(folder.path());
        const auto result = find(options);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
        return namesOf(lines(result.output));
    }

    Names namesOf(Names paths) const
    {
        for (auto& path : paths) {
            EXPECT_EQ(path.rfind(folder.path(), 0), 0u) << path;
            path.erase(0, std::min(path.size(), folder.path().size() + 1));
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    /// Folders in folders, three levels of them, with a file in each.
    void makeTree()
    {
        for (const std::string name : { "a", "a/b", "a/b/c" }) {
            folder.makeFolder(name);
            folder.write(name + "/file");
        }
    }

    /// Two items of each kind that people don't see as plain files and folders.
    void makeUnusualFiles()
    {
        folder.makeFolder(".hidden");
        folder.write(".hidden/inside");
        folder.makeFolder("Tool.app");
        folder.write("Tool.app/inside");
        folder.makeFolder("plain");
        folder.write("plain/.dot");
        folder.symlink("plain", "link");
    }
};

TEST_F(FindTest, PrintsEverythingBeneathAFolderAndTheFolder)
{
    makeTree();

    EXPECT_EQ(found(), Names({ "", "a", "a/b", "a/b/c", "a/b/c/file", "a/b/file", "a/file" }));
}

TEST_F(FindTest, PrintsWhatItBeganWithLast)
{
    makeTree();

    const auto paths = lines(find({ folder.path("a/b"), folder.path("a/file") }).output);

    ASSERT_EQ(paths.size(), 5u);
    EXPECT_EQ(paths[3], folder.path("a/b"));
    EXPECT_EQ(paths[4], folder.path("a/file"));
}

TEST_F(FindTest, PrintsTheContentsOfASubfolderBeforeTheSubfolder)
{
    makeTree();

    const auto paths = lines(find({ folder.path() }).output);

    const auto place = [&](const std::string& name) {
        return std::find(paths.begin(), paths.end(), folder.path(name)) - paths.begin();
    };
    EXPECT_LT(place("a/b/c/file"), place("a/b/c"));
    EXPECT_LT(place("a/b/c"), place("a/b"));
    EXPECT_LT(place("a/b"), place("a"));
}

TEST_F(FindTest, LooksAsManyLevelsDeepAsItIsTold)
{
    makeTree();

    EXPECT_EQ(found({ "--depth", "1" }), Names({ "", "a" }));
    EXPECT_EQ(found({ "--depth", "2" }), Names({ "", "a", "a/b", "a/file" }));
    EXPECT_EQ(found({ "--depth", "-1" }).size(), 7u);
    EXPECT_EQ(found({ "--depth", "9223372036854775807" }).size(), 7u);
}

TEST_F(FindTest, LooksIntoNoFolderWithADepthOfZeroOrBelowMinusOne)
{
    makeTree();

    EXPECT_EQ(found({ "--depth", "0" }), Names({ "" }));
    EXPECT_EQ(found({ "--depth", "-2" }), Names({ "" }));
}

TEST_F(FindTest, PrintsEachFileOnceWhereverItBegins)
{
    makeTree();

    const auto result = find({ folder.path(), folder.path("a/b"), folder.path() });

    EXPECT_EQ(namesOf(lines(result.output)),
        Names({ "", "a", "a/b", "a/b/c", "a/b/c/file", "a/b/file", "a/file" }));
}

TEST_F(FindTest, FindsHiddenFilesAndPackagesUnlessItIsTold)
{
    makeUnusualFiles();

    EXPECT_EQ(found(),
        Names({ "", ".hidden", ".hidden/inside", "Tool.app", "Tool.app/inside", "link", "plain",
            "plain/.dot" }));
}

TEST_F(FindTest, LeavesOutWhatIsHiddenWithTheVisibleFilter)
{
    makeUnusualFiles();

    EXPECT_EQ(found({ "--visible" }),
        Names({ "", ".hidden/inside", "Tool.app", "Tool.app/inside", "link", "plain" }));
}

TEST_F(FindTest, LooksIntoNoHiddenFolderAndNoPackageWithTheNormalFilter)
{
    makeUnusualFiles();

    EXPECT_EQ(
        found({ "--normal" }), Names({ "", ".hidden", "Tool.app", "link", "plain", "plain/.dot" }));
}

TEST_F(FindTest, FollowsLinksWithTheNormalFilterAlone)
{
    makeTree();
    folder.makeFolder("links");
    folder.symlink("../a/b/c", "links/link");

    const auto unfollowed = find({ folder.path("links") });
    const auto followed = find({ "--normal", folder.path("links") });

    EXPECT_EQ(namesOf(lines(unfollowed.output)), Names({ "links", "links/link" }));
    EXPECT_EQ(namesOf(lines(followed.output)), Names({ "a/b/c/file", "links", "links/link" }));
}

TEST_F(FindTest, EndsWhereLinksLeadInACircle)
{
    folder.makeFolder("a");
    folder.symlink("..", "a/up");
    folder.symlink(".", "a/self");

    EXPECT_EQ(found({ "--normal" }), Names({ "", "a", "a/self", "a/up" }));
}

TEST_F(FindTest, BeginsWithALinkItselfUnlessASlashStandsBehindIt)
{
    makeTree();
    folder.symlink("a/b/c", "link");

    EXPECT_EQ(namesOf(lines(find({ folder.path("link") }).output)), Names({ "link" }));
    EXPECT_EQ(namesOf(lines(find({ folder.path("link") + "/" }).output)),
        Names({ "a/b/c", "a/b/c/file" }));
}

TEST_F(FindTest, TakesAPathInTheFolderThatItRunsIn)
{
    makeTree();
    settings.folder = folder.path("a/b");

    EXPECT_EQ(namesOf(lines(find({ "c" }).output)), Names({ "a/b/c", "a/b/c/file" }));
    EXPECT_EQ(
        namesOf(lines(find({ "." }).output)), Names({ "a/b", "a/b/c", "a/b/c/file", "a/b/file" }));
}

TEST_F(FindTest, PrintsAnItemALineAsJSON)
{
    folder.write("new\nline");
    folder.symlink("nowhere", "link");

    const auto items = objects(find({ "--json", folder.path() }).output);

    ASSERT_EQ(items.size(), 3u);
    const auto& link = items[0]["isSymlink"] == true ? items[0] : items[1];
    const auto& file = items[0]["isSymlink"] == true ? items[1] : items[0];
    EXPECT_EQ(link["url"], folder.url("link").absoluteString());
    EXPECT_EQ(file["url"], folder.url("new\nline").absoluteString());
    EXPECT_EQ(file["path"], folder.path("new\nline"));
    EXPECT_EQ(file["isBasicDirectory"], false);
    EXPECT_EQ(file["isValid"], true);
    EXPECT_EQ(items[2]["url"], folder.folderUrl().absoluteString());
    EXPECT_EQ(items[2]["isBasicDirectory"], true);
    EXPECT_NE(link["id"], file["id"]);
    for (const auto& item : items)
        EXPECT_EQ(item["class"], "ZEFBasicInfoFileItem");
}

TEST_F(FindTest, UsesPlainItemsWhenItIsTold)
{
    makeTree();

    const auto items = objects(find({ "--json", "--plain", folder.path() }).output);

    EXPECT_EQ(items.size(), 7u);
    for (const auto& item : items)
        EXPECT_EQ(item["class"], "ZEFFileItem");
}

TEST_F(FindTest, PrintsPathsFitForATerminal)
{
    folder.write("new\nline");
    folder.write("bad\xff");
    folder.write("\x1b[31mred");

    EXPECT_EQ(found(), Names({ "", "\\x1b[31mred", "bad\ufffd", "new\\nline" }));
}

TEST_F(FindTest, TellsWhatIsMissingAndDoesTheRest)
{
    makeTree();

    const auto result = find({ folder.path("missing"), folder.path("a/b/c"), "" });

    EXPECT_EQ(namesOf(lines(result.output)), Names({ "a/b/c", "a/b/c/file" }));
    EXPECT_EQ(result.errors,
        "zef: " + folder.path("missing")
            + ": No such file or directory\nzef: : No such file or directory\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(FindTest, FindsNothingWhenEverythingIsMissing)
{
    const auto result = find({ folder.path("missing") });

    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "zef: " + folder.path("missing") + ": No such file or directory\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(FindTest, TellsWhichFolderMayNotBeReadAndDoesTheRest)
{
    settings.withoutPrivileges = true;
    makeTree();
    folder.chmod("a/b", 0);

    const auto result = find({ folder.path() });

    EXPECT_EQ(namesOf(lines(result.output)), Names({ "", "a", "a/b", "a/file" }));
    EXPECT_EQ(result.errors, "zef: " + folder.path("a/b") + ": Permission denied\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(FindTest, TellsOfNoFolderThatItDoesNotLookInto)
{
    settings.withoutPrivileges = true;
    makeTree();
    folder.chmod("a/b", 0);

    const auto outside = find({ "--depth", "2", folder.path() });
    const auto inside = find({ "--depth", "3", folder.path() });

    EXPECT_EQ(outside.errors, "");
    EXPECT_EQ(outside.status, 0);
    EXPECT_EQ(inside.errors, "zef: " + folder.path("a/b") + ": Permission denied\n");
    EXPECT_EQ(inside.status, 1);
}

TEST_F(FindTest, TellsOnceOfAFolderThatTwoLinksLeadTo)
{
    settings.withoutPrivileges = true;
    folder.makeFolder("a");
    folder.symlink("a", "one");
    folder.symlink("a", "two");
    folder.chmod("a", 0);

    EXPECT_EQ(find({ "--normal", folder.path() }).errors,
        "zef: " + folder.path("a") + ": Permission denied\n");
}

TEST_F(FindTest, TellsOfAFolderWithAHostileNameFitForATerminal)
{
    settings.withoutPrivileges = true;
    folder.makeFolder("a \x1b[31m\n%s");
    folder.chmod("a \x1b[31m\n%s", 0);

    const auto result = find({ folder.path() });

    EXPECT_EQ(result.errors, "zef: " + folder.path("a \\x1b[31m\\n%s") + ": Permission denied\n");
}

TEST_F(FindTest, ComplainsOfNoSocketThoughItHasAFoldersMark)
{
    settings.folder = folder.path();
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{ AF_UNIX, {} };
    const auto path = folder.path("socket");
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);

    EXPECT_EQ(found(), Names({ "", "socket" }));
    EXPECT_EQ(found({ "--normal" }), Names({ "", "socket" }));
}

TEST_F(FindTest, PrintsTenThousandFilesWhole)
{
    Names names{ "" };
    for (int number = 10'000; number < 20'000; ++number)
        names.push_back(std::to_string(number));
    for (const auto& name : names) {
        if (!name.empty())
            folder.write(name, "");
    }

    EXPECT_EQ(found(), names);
    EXPECT_EQ(objects(find({ "--json", folder.path() }).output).size(), 10'001u);
}

TEST_F(FindTest, ShowsNoProgressWhereStandardErrorIsNoTerminal)
{
    makeTree();

    EXPECT_EQ(find({ folder.path() }).errors, "");
}

TEST_F(FindTest, EndsQuietlyWhenNobodyReadsAnyMore)
{
    ZefProcess process({ "find", "--plain", "--json", "/usr" });

    EXPECT_TRUE(process.nextLine());
    process.closeOutput();

    EXPECT_EQ(process.status(), 0);
}

TEST_F(FindTest, EndsQuietlyWhenNobodyReadsFromTheStart)
{
    makeTree();
    ZefProcess process({ "find", folder.path() });

    process.closeOutput();

    EXPECT_EQ(process.status(), 0);
    EXPECT_EQ(process.errorText(), "");
}

TEST_F(FindTest, SaysWhenItsOutputCannotBeWritten)
{
    settings.closed = { 1 };

    const auto result = find({ folder.path() });

    EXPECT_EQ(result.errors, "zef: standard output: Bad file descriptor\n");
    EXPECT_EQ(result.status, 1);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/LinkFollower.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include "tests/support/LogRecorder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sys/stat.h>

namespace {

using Follows = zef::LinkFollower::Follows;
using Result = zef::FileError;

class LinkFollowerTest : public testing::Test {
protected:
    ~LinkFollowerTest() override { EXPECT_TRUE(log.lines().empty()); }

    zef::FileError follow(std::string_view name, Follows follows = Follows::linksAndAliasFiles)
    {
        EXPECT_EQ(place.lookAt(folder.url(name)), Result::none);
        zef::LinkFollower resolution(entries, automountPoints, follows);
        const auto result = resolution.follow(place);
        hasFollowed = resolution.hasFollowed();
        return result;
    }

    // Where the way that begins at `name` ends, as a path relative to the folder.
    std::string endOf(std::string_view name, Follows follows = Follows::linksAndAliasFiles)
    {
        const auto result = follow(name, follows);
        if (result != Result::none)
            return "error " + std::to_string(numberOf(result));
        const auto path = place.url().path();
        return path.starts_with(folder.path() + "/") ? path.substr(folder.path().size() + 1) : path;
    }

    void writeAlias(std::string_view name, const std::string& target)
    {
        folder.write(name, "[Desktop Entry]\nType=Link\nURL=" + target + "\n");
    }

    // name 0 -> name 1 -> ... -> name `count`, which is a file.
    void makeLinks(int count)
    {
        for (int index = 0; index < count; ++index)
            folder.symlink("link " + std::to_string(index + 1), "link " + std::to_string(index));
        folder.write("link " + std::to_string(count));
    }

    TemporaryFolder folder;
    LogRecorder log;
    zef::DesktopEntryCache entries;
    std::vector<zef::Mount> mounts;
    zef::AutomountPoints automountPoints{ [this] { return mounts; } };
    zef::ObjectPlace place;
    bool hasFollowed = false;
};

TEST_F(LinkFollowerTest, StaysAtWhatLeadsNowhereElse)
{
    folder.write("file");
    folder.makeFolder("folder");
    ASSERT_EQ(::mkfifo(folder.path("fifo.desktop").c_str(), 0666), 0);

    for (const auto* name : { "file", "folder", "fifo.desktop" }) {
        EXPECT_EQ(endOf(name), name);
        EXPECT_FALSE(hasFollowed);
    }
}

TEST_F(LinkFollowerTest, FollowsALink)
{
    folder.write("file");
    folder.symlink("file", "relative");
    folder.symlink(folder.path("file"), "absolute");

    for (const auto* name : { "relative", "absolute" }) {
        EXPECT_EQ(endOf(name), "file");
        EXPECT_TRUE(hasFollowed);
        EXPECT_FALSE(place.stat().isSymlink());
    }
}

TEST_F(LinkFollowerTest, TakesARelativeTargetFromTheFolderOfTheLink)
{
    folder.makeFolder("a");
    folder.makeFolder("b");
    folder.write("b/file");
    folder.symlink("../b/file", "a/link");
    folder.symlink("a", "alias");

    EXPECT_EQ(endOf("a/link"), "b/file");
    EXPECT_EQ(endOf("alias/link"), "b/file");
}

TEST_F(LinkFollowerTest, KeepsTheSpellingOfTheFolder)
{
    folder.makeFolder("real");
    folder.write("real/file");
    folder.symlink("file", "real/link");
    folder.symlink("real", "spelled");

    EXPECT_EQ(endOf("spelled/link"), "spelled/file");
}

TEST_F(LinkFollowerTest, FollowsLinksToFolders)
{
    folder.makeFolder("folder");
    folder.makeFolder("folder/inner");
    folder.symlink("folder/inner/", "down");
    folder.symlink("..", "folder/up");
    folder.symlink(".", "folder/here");
    folder.symlink("/", "root");

    EXPECT_EQ(endOf("down"), "folder/inner");
    EXPECT_EQ(endOf("folder/up"), folder.path());
    EXPECT_EQ(endOf("folder/here"), "folder");
    EXPECT_EQ(endOf("root"), "/");
}

TEST_F(LinkFollowerTest, FollowsAnAliasFile)
{
    folder.write("a file");
    writeAlias("url.desktop", "file://" + folder.path("a%20file"));
    writeAlias("path.desktop", folder.path("a file"));

    EXPECT_EQ(endOf("url.desktop"), "a file");
    EXPECT_EQ(endOf("path.desktop"), "a file");
    EXPECT_TRUE(hasFollowed);
}

TEST_F(LinkFollowerTest, FollowsAliasFilesAndLinksByTurns)
{
    folder.write("file");
    folder.symlink("file", "link");
    writeAlias("alias.desktop", folder.path("link"));
    folder.symlink("alias.desktop", "link to alias");
    writeAlias("first.desktop", folder.path("link to alias"));

    EXPECT_EQ(endOf("first.desktop"), "file");
}

TEST_F(LinkFollowerTest, StaysAtAnAliasFileWhenOnlyLinksAreWanted)
{
    folder.write("file");
    writeAlias("alias.desktop", folder.path("file"));
    folder.symlink("alias.desktop", "link");

    EXPECT_EQ(endOf("link", Follows::links), "alias.desktop");
    EXPECT_EQ(endOf("alias.desktop", Follows::links), "alias.desktop");
    EXPECT_FALSE(hasFollowed);
}

TEST_F(LinkFollowerTest, StaysAtAnAliasFileWithAnotherName)
{
    folder.write("file");
    writeAlias("alias.txt", folder.path("file"));

    EXPECT_EQ(endOf("alias.txt"), "alias.txt");
}

TEST_F(LinkFollowerTest, StaysAtDesktopEntriesThatLeadToNoFile)
{
    writeAlias("web.desktop", "https://example.org/");
    folder.write("app.desktop", "[Desktop Entry]\nType=Application\nURL=/etc\n");
    folder.write("broken.desktop", "\xFF\x01");

    for (const auto* name : { "web.desktop", "app.desktop", "broken.desktop" })
        EXPECT_EQ(endOf(name), name);
}

TEST_F(LinkFollowerTest, StaysAtAnAliasFileThatMayNotBeRead)
{
    writeAlias("alias.desktop", folder.path());
    folder.chmod("alias.desktop", 0);
    const WithoutPrivileges plain;

    EXPECT_EQ(endOf("alias.desktop"), "alias.desktop");
}

TEST_F(LinkFollowerTest, MissesWhatIsNotThere)
{
    folder.write("file");
    folder.symlink("nowhere", "dangling");
    folder.symlink("file/in a file", "through file");
    folder.symlink("missing/../file", "through missing");
    folder.symlink("dangling", "chain");
    writeAlias("alias.desktop", folder.path("nowhere"));

    for (const auto* name :
        { "dangling", "through file", "through missing", "chain", "alias.desktop" })
        EXPECT_EQ(follow(name), Result::notFound) << name;
}

TEST_F(LinkFollowerTest, MayNotGoThroughAFolderThatMayNotBeSearched)
{
    folder.makeFolder("closed");
    folder.write("closed/file");
    folder.symlink("closed/file", "link");
    folder.chmod("closed", 0);
    const WithoutPrivileges plain;

    EXPECT_EQ(follow("link"), Result::accessDenied);
}

TEST_F(LinkFollowerTest, GoesSixteenStepsAndNoFurther)
{
    makeLinks(17);

    EXPECT_EQ(endOf("link 1"), "link 17");
    EXPECT_EQ(follow("link 0"), Result::io);
}

TEST_F(LinkFollowerTest, EndsInCircles)
{
    folder.symlink("self", "self");
    folder.symlink("pong", "ping");
    folder.symlink("ping", "pong");
    writeAlias("self.desktop", folder.path("self.desktop"));
    writeAlias("one.desktop", folder.path("two"));
    folder.symlink("one.desktop", "two");

    for (const auto* name : { "self", "ping", "self.desktop", "one.desktop", "two" })
        EXPECT_EQ(follow(name), Result::io) << name;
}

TEST_F(LinkFollowerTest, EndsWhenTheWayGrowsWithEachStep)
{
    folder.symlink(".", "here");
    folder.symlink("here/grow", "grow");
    folder.symlink(folder.path("here") + "/../" + "missing", "climb");

    EXPECT_EQ(follow("grow"), Result::io);
    EXPECT_EQ(follow("climb"), Result::notFound);
}

TEST_F(LinkFollowerTest, FollowsNoTargetThatIsTooLong)
{
    writeAlias("alias.desktop", "/" + std::string(5000, 'x'));

    EXPECT_EQ(follow("alias.desktop"), Result::io);
}

TEST_F(LinkFollowerTest, LooksAtNothingThatWouldHaveToBeMounted)
{
    folder.makeFolder("net");
    folder.makeFolder("net/host");
    folder.write("net/host/file");
    mounts = { { 1, 1, folder.path("net"), "autofs" } };
    folder.symlink("net/host/file", "link");
    folder.symlink("net/host/..", "climbing link");
    folder.symlink("net", "link to the place itself");
    writeAlias("alias.desktop", "file://" + folder.path("net/host"));

    for (const auto* name : { "link", "climbing link", "alias.desktop" })
        EXPECT_EQ(follow(name), Result::notFound) << name;
    EXPECT_EQ(endOf("link to the place itself"), "net");

    mounts.push_back({ 2, 2, folder.path("net/host"), "nfs4" });
    EXPECT_EQ(endOf("link"), "net/host/file");
}

TEST_F(LinkFollowerTest, KeepsEveryByteOfATarget)
{
    folder.write("\xFF\n%41 ?#");
    folder.symlink("\xFF\n%41 ?#", "link");

    EXPECT_EQ(endOf("link"), "\xFF\n%41 ?#");
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/PathDots.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

class PathDotsTest : public testing::Test {
protected:
    PathDotsTest()
    {
        folder.makeFolder("a");
        folder.makeFolder("a/b");
        folder.makeFolder("c");
        folder.symlink("../c", "a/link");
        folder.symlink("a", "alias");
    }

    std::string without(const std::string& path) { return zef::pathWithoutDots(folder.path(path)); }

    TemporaryFolder folder;
};

TEST_F(PathDotsTest, LeavesOtherPathsAlone)
{
    for (const auto* path : { "/", "/a", "/a/b/", "/.hidden", "/a/..b", "/a/b..", "/missing/c" })
        EXPECT_EQ(zef::pathWithoutDots(path + std::string("/x")), path + std::string("/x"));
}

TEST_F(PathDotsTest, LeavesOutSingleDots)
{
    EXPECT_EQ(without("./a/./b/."), folder.path("a/b"));
    EXPECT_EQ(without("missing/./x"), folder.path("missing/x"));
    EXPECT_EQ(zef::pathWithoutDots("/."), "/");
}

TEST_F(PathDotsTest, ClimbsFolders)
{
    EXPECT_EQ(without("a/b/../x"), folder.path("a/x"));
    EXPECT_EQ(without("a/b/../../c"), folder.path("c"));
    EXPECT_EQ(without("a/b/.."), folder.path("a"));
    EXPECT_EQ(without("a/../a/b/../x/y"), folder.path("a/x/y"));
}

TEST_F(PathDotsTest, EndsAtTheRoot)
{
    EXPECT_EQ(zef::pathWithoutDots("/.."), "/");
    EXPECT_EQ(zef::pathWithoutDots("/../../etc"), "/etc");
}

TEST_F(PathDotsTest, KeepsTheSpellingOfFoldersThatItDoesNotClimb)
{
    EXPECT_EQ(without("alias/b/../x"), folder.path("alias/x"));
}

TEST_F(PathDotsTest, ClimbsFromWhereALinkLeads)
{
    EXPECT_EQ(without("a/link/../x"), folder.path("x"));
    EXPECT_EQ(without("alias/link/.."), folder.path());
}

TEST_F(PathDotsTest, LeavesPathsThatLeadNowhere)
{
    EXPECT_EQ(without("missing/../a"), folder.path("missing/../a"));
}

TEST_F(PathDotsTest, DoesNotLookAtTheLastComponent)
{
    EXPECT_EQ(without("a/b/../link"), folder.path("a/link"));
    EXPECT_EQ(without("a/b/../missing"), folder.path("a/missing"));
}

} // namespace

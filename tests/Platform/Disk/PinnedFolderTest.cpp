// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/PinnedFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <string>

namespace {

class PinnedFolderTest : public testing::Test {
protected:
    PinnedFolderTest()
    {
        folder.makeFolder("inner");
        folder.write("inner/file");
        folder.write("outside");
    }

    zef::FSRef ref(const std::string& name)
    {
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::system().statLink(folder.path(name).c_str(), stat), 0);
        return zef::FSRef(stat);
    }

    void pin() { pinned.emplace(ref("inner"), folder.folderUrl("inner")); }

    /// By way of the pinned folder.
    int look(const std::string& name)
    {
        zef::Stat stat;
        return zef::FileSystem::system().statEntry(*pinned, folder.path(name).c_str(), stat);
    }

    TemporaryFolder folder;
    std::optional<zef::PinnedFolder> pinned;
};

TEST_F(PinnedFolderTest, LooksAtEntriesAsTheyAre)
{
    pin();
    EXPECT_EQ(look("inner/file"), 0);

    folder.remove("inner/file");

    EXPECT_EQ(look("inner/file"), ENOENT);
}

TEST_F(PinnedFolderTest, LeavesOtherPathsToTheFileSystem)
{
    folder.makeFolder("inner/deep");
    folder.write("inner/deep/file");
    pin();

    EXPECT_EQ(look("inner"), 0);
    EXPECT_EQ(look("outside"), 0);
    EXPECT_EQ(look("inner/deep/file"), 0);
    EXPECT_EQ(look("missing"), ENOENT);
}

TEST_F(PinnedFolderTest, FindsEntriesAfterTheFolderWasRenamed)
{
    pin();
    folder.rename("inner", "renamed");

    EXPECT_EQ(look("inner/file"), 0);
    EXPECT_EQ(look("inner"), ENOENT);
}

TEST_F(PinnedFolderTest, ServesNoLookThatItIsNotPassedTo)
{
    pin();
    folder.rename("inner", "renamed");
    zef::Stat stat;

    EXPECT_EQ(zef::FileSystem::system().statLink(folder.path("inner/file").c_str(), stat), ENOENT);
}

TEST_F(PinnedFolderTest, HasNoEntriesIfAnotherFolderIsThere)
{
    const auto former = ref("inner");
    folder.rename("inner", "renamed");
    folder.makeFolder("inner");
    pinned.emplace(former, folder.folderUrl("inner"));

    EXPECT_FALSE(pinned->entry(folder.path("inner/file").c_str()));
    EXPECT_EQ(look("inner/file"), ENOENT);
    EXPECT_EQ(look("renamed/file"), 0);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/ParentInodes.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

class ParentInodesTest : public testing::Test {
protected:
    ParentInodesTest() { zef::Clock::replaceShared(&clock); }
    ~ParentInodesTest() override { zef::Clock::replaceShared(nullptr); }

    std::uint64_t inode(std::string_view name)
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), stat);
        return stat.inode;
    }

    SteppedClock clock;
    TemporaryFolder folder;
    zef::ParentInodes numbers;
};

TEST_F(ParentInodesTest, TellsTheNumberOfTheFolder)
{
    folder.makeFolder("inner");

    EXPECT_EQ(numbers.inodeOfFolderOf(folder.url("inner/file")), inode("inner"));
    EXPECT_EQ(numbers.inodeOfFolderOf(folder.url("inner")), inode(""));
}

TEST_F(ParentInodesTest, FollowsALink)
{
    folder.makeFolder("inner");
    folder.symlink("inner", "link");

    EXPECT_EQ(numbers.inodeOfFolderOf(folder.url("link/file")), inode("inner"));
}

TEST_F(ParentInodesTest, TellsZeroWhereThereIsNoFolder)
{
    EXPECT_EQ(numbers.inodeOfFolderOf(folder.url("missing/file")), 0u);
}

TEST_F(ParentInodesTest, AsksOnlyOnceForFilesOfOneFolderInARow)
{
    folder.makeFolder("one");
    folder.makeFolder("other");
    const auto before = inode("one");
    EXPECT_EQ(numbers.inodeOfFolderOf(folder.url("one/a")), before);
    folder.exchange("one", "other");

    EXPECT_EQ(numbers.inodeOfFolderOf(folder.url("one/b")), before);
    clock.advance(0.2);
    EXPECT_EQ(numbers.inodeOfFolderOf(folder.url("one/c")), inode("one"));
}

} // namespace

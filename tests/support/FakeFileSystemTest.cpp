// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileSystem.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <system_error>

namespace {

TEST(FakeFileSystemTest, StandsInForTheSharedOneWhileItLives)
{
    {
        FakeFileSystem files;
        EXPECT_EQ(&zef::FileSystem::shared(), &files);
    }
    EXPECT_EQ(&zef::FileSystem::shared(), &zef::FileSystem::system());
}

TEST(FakeFileSystemTest, TellsWhatTheTestSays)
{
    FakeFileSystem files;
    auto stat = files.addFile("/file");
    stat.modificationTime = { 5, -1 };
    stat.inode = 1234567890123;
    files.setStat("/file", stat);

    zef::Stat found;
    EXPECT_EQ(files.statLink("/file", found), 0);
    EXPECT_EQ(found.modificationTime.tv_nsec, -1);
    EXPECT_EQ(found.inode, 1234567890123u);
}

TEST(FakeFileSystemTest, FailsAndCountsAsTheTestSays)
{
    FakeFileSystem files;
    files.addFile("/file");
    files.setError("/file", EIO);

    zef::Stat stat;
    EXPECT_EQ(files.statLink("/file", stat), EIO);
    EXPECT_FALSE(files.exists("/file"));
    EXPECT_FALSE(files.handle("/file").isKnown());
    files.setError("/file", 0);
    EXPECT_EQ(files.statLink("/file", stat), 0);
    EXPECT_EQ(files.statCount(), 2u);
    EXPECT_EQ(files.existsCount(), 1u);
    EXPECT_EQ(files.handleCount(), 1u);
}

TEST(FakeFileSystemTest, GivesANumberAgainWithAnotherBirthTimeAndHandle)
{
    FakeFileSystem files;
    const auto old = files.addFile("/file");
    const auto oldHandle = files.handle("/file");
    files.remove("/file");
    files.setNextInode(old.inode);

    const auto young = files.addFile("/file");

    EXPECT_EQ(young.inode, old.inode);
    EXPECT_GT(young.birthTime, old.birthTime);
    EXPECT_FALSE(files.handle("/file") == oldHandle);
}

TEST(FakeFileSystemTest, ThrowsWhereNothingIs)
{
    FakeFileSystem files;

    EXPECT_THROW(files.addFile("/missing/file"), std::system_error);
    EXPECT_THROW(files.write("/missing"), std::system_error);
    EXPECT_THROW(files.remove("/missing"), std::system_error);
    EXPECT_THROW(files.rename("/missing", "/other"), std::system_error);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class FileSystemTest : public testing::Test {
protected:
    zef::Stat stat(std::string_view name)
    {
        zef::Stat result;
        EXPECT_EQ(fileSystem.statLink(folder.path(name).c_str(), result), 0);
        return result;
    }

    TemporaryFolder folder;
    zef::FileSystem& fileSystem = zef::FileSystem::system();
};

TEST_F(FileSystemTest, TellsWhatLstatTells)
{
    folder.write("file", "12345");
    struct stat expected;
    ASSERT_EQ(::lstat(folder.path("file").c_str(), &expected), 0);
    const auto found = stat("file");

    EXPECT_EQ(found.device, expected.st_dev);
    EXPECT_EQ(found.inode, expected.st_ino);
    EXPECT_EQ(found.mode, expected.st_mode);
    EXPECT_EQ(found.size, 5u);
    EXPECT_EQ(found.linkCount, expected.st_nlink);
    EXPECT_EQ(found.modificationTime.tv_sec, expected.st_mtim.tv_sec);
    EXPECT_EQ(found.modificationTime.tv_nsec, expected.st_mtim.tv_nsec);
    EXPECT_EQ(found.statusChangeTime.tv_sec, expected.st_ctim.tv_sec);
    EXPECT_EQ(found.statusChangeTime.tv_nsec, expected.st_ctim.tv_nsec);
}

TEST_F(FileSystemTest, TellsThatAFileWasBornBeforeItWasLastChanged)
{
    folder.write("file");
    const auto found = stat("file");
    if (!found.hasBirthTime)
        GTEST_SKIP() << "this file system keeps no birth times";

    const auto changed = found.statusChangeTime.tv_sec * 1'000'000'000
        + found.statusChangeTime.tv_nsec;
    EXPECT_GT(found.birthTime, 0);
    EXPECT_LE(found.birthTime, changed);
}

TEST_F(FileSystemTest, ReadsTimeStampsBefore1970)
{
    folder.write("file");
    folder.setModificationTime("file", -86400);

    EXPECT_EQ(stat("file").modificationTime.tv_sec, -86400);
}

TEST_F(FileSystemTest, MayNotLookIntoAFolderThatMayNotBeSearched)
{
    folder.makeFolder("closed");
    folder.write("closed/file");
    folder.chmod("closed", 0);
    const WithoutPrivileges plain;
    zef::Stat found;

    EXPECT_EQ(fileSystem.statLink(folder.path("closed/file").c_str(), found), EACCES);
    EXPECT_FALSE(fileSystem.handle(folder.path("closed/file").c_str()).isKnown());
    const bool isRoot = ::getuid() == 0; // whom access(2) lets in again
    EXPECT_EQ(fileSystem.exists(folder.path("closed/file").c_str()), isRoot);
}

TEST_F(FileSystemTest, DescribesAFileThatMayNotBeRead)
{
    folder.write("file");
    folder.chmod("file", 0);
    const WithoutPrivileges plain;
    zef::Stat found;

    EXPECT_EQ(fileSystem.statLink(folder.path("file").c_str(), found), 0);
    EXPECT_TRUE(fileSystem.exists(folder.path("file").c_str()));
}

TEST(StatTest, CallsASocketAFolderByItsModeBit)
{
    zef::Stat stat;
    stat.mode = S_IFSOCK | 0755;

    EXPECT_TRUE(stat.isBasicDirectory());
    EXPECT_FALSE(stat.isFolder());
    EXPECT_FALSE(stat.isSymlink());
}

TEST(StatTest, GoesByTheModeBitsOfEachKind)
{
    struct {
        std::uint32_t mode;
        bool isBasicDirectory;
        bool isSymlink;
        bool isFolder;
    } const kinds[] = {
        { S_IFREG, false, false, false }, { S_IFDIR, true, false, true },
        { S_IFLNK, false, true, false }, { S_IFBLK, true, false, false },
        { S_IFCHR, false, false, false }, { S_IFIFO, false, false, false },
        { 0160000, true, true, false }, // a whiteout, as other systems have it
    };
    for (const auto& kind : kinds) {
        zef::Stat stat;
        stat.mode = kind.mode | 0644;
        EXPECT_EQ(stat.isBasicDirectory(), kind.isBasicDirectory) << std::oct << kind.mode;
        EXPECT_EQ(stat.isSymlink(), kind.isSymlink) << std::oct << kind.mode;
        EXPECT_EQ(stat.isFolder(), kind.isFolder) << std::oct << kind.mode;
    }
}

} // namespace

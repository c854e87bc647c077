// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/FileSystem.h"

#include "ZEFFilesystemTools/Platform/TimeStamp.h"

#include "tests/support/FakeFileSystem.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// Real files, asked about through the system's service.
class RealFiles {
public:
    zef::FileSystem& service() { return zef::FileSystem::system(); }
    std::string path(std::string_view name) const { return _folder.path(name); }

    void addFile(std::string_view name) { _folder.write(name); }
    void addFolder(std::string_view name) { _folder.makeFolder(name); }
    void addLink(std::string_view name, const std::string& target)
    {
        _folder.symlink(target, name);
    }
    void addHardLink(std::string_view from, std::string_view to) { _folder.link(from, to); }
    void write(std::string_view name) { _folder.write(name, "other text"); }
    void rename(std::string_view from, std::string_view to) { _folder.rename(from, to); }
    void remove(std::string_view name) { _folder.remove(name); }

private:
    TemporaryFolder _folder;
};

class FakeFiles {
public:
    FakeFiles() { _files.addFolder("/base"); }

    zef::FileSystem& service() { return _files; }
    std::string path(std::string_view name) const
    {
        return name.empty() ? "/base" : "/base/" + std::string(name);
    }

    void addFile(std::string_view name) { _files.addFile(path(name)); }
    void addFolder(std::string_view name) { _files.addFolder(path(name)); }
    void addLink(std::string_view name, const std::string& target)
    {
        _files.addLink(path(name), target);
    }
    void addHardLink(std::string_view from, std::string_view to)
    {
        _files.addHardLink(path(from), path(to));
    }
    void write(std::string_view name) { _files.write(path(name)); }
    void rename(std::string_view from, std::string_view to) { _files.rename(path(from), path(to)); }
    void remove(std::string_view name) { _files.remove(path(name)); }

private:
    FakeFileSystem _files;
};

// What every file system service does, the real one and the fake.
template <typename Files> class FileSystemContractTest : public testing::Test {
protected:
    int errorOf(std::string_view name)
    {
        zef::Stat stat;
        return files.service().statLink(files.path(name).c_str(), stat);
    }

    zef::Stat stat(std::string_view name)
    {
        zef::Stat result;
        EXPECT_EQ(files.service().statLink(files.path(name).c_str(), result), 0) << name;
        return result;
    }

    bool exists(std::string_view name) { return files.service().exists(files.path(name).c_str()); }

    zef::FileHandle handle(std::string_view name)
    {
        return files.service().handle(files.path(name).c_str());
    }

    double modificationTime(std::string_view name)
    {
        return zef::secondsOfTimeStamp(stat(name).modificationTime);
    }

    Files files;
};

using BothFiles = testing::Types<RealFiles, FakeFiles>;

struct FilesName {
    template <typename Files> static std::string GetName(int)
    {
        return std::is_same_v<Files, RealFiles> ? "Real" : "Fake";
    }
};

TYPED_TEST_SUITE(FileSystemContractTest, BothFiles, FilesName);

TYPED_TEST(FileSystemContractTest, TellsFilesFoldersAndLinksApart)
{
    this->files.addFile("file");
    this->files.addFolder("folder");
    this->files.addLink("link", "folder");

    EXPECT_EQ(this->stat("file").mode & S_IFMT, unsigned{ S_IFREG });
    EXPECT_EQ(this->stat("folder").mode & S_IFMT, unsigned{ S_IFDIR });
    EXPECT_EQ(this->stat("link").mode & S_IFMT, unsigned{ S_IFLNK });
}

TYPED_TEST(FileSystemContractTest, FollowsLinksOnTheWayButNotTheLast)
{
    this->files.addFolder("folder");
    this->files.addFile("folder/file");
    this->files.addLink("relative", "folder");
    this->files.addLink("absolute", this->files.path("folder"));

    EXPECT_EQ(this->stat("relative/file").inode, this->stat("folder/file").inode);
    EXPECT_EQ(this->stat("absolute/file").inode, this->stat("folder/file").inode);
    EXPECT_NE(this->stat("relative").inode, this->stat("folder").inode);
}

TYPED_TEST(FileSystemContractTest, FollowsALinkBeforeASlash)
{
    this->files.addFolder("folder");
    this->files.addLink("link", "folder");

    EXPECT_EQ(this->stat("link/").inode, this->stat("folder").inode);
}

TYPED_TEST(FileSystemContractTest, LeavesTheStatAloneWhereNothingIs)
{
    zef::Stat stat;
    stat.inode = 77;

    EXPECT_EQ(this->files.service().statLink(this->files.path("missing").c_str(), stat), ENOENT);
    EXPECT_EQ(stat.inode, 77u);
    EXPECT_FALSE(this->exists("missing"));
}

TYPED_TEST(FileSystemContractTest, FindsNothingAtAnEmptyPath)
{
    zef::Stat stat;

    EXPECT_EQ(this->files.service().statLink("", stat), ENOENT);
    EXPECT_FALSE(this->files.service().exists(""));
    EXPECT_FALSE(this->files.service().handle("").isKnown());
}

TYPED_TEST(FileSystemContractTest, SaysThatAFileIsNoFolder)
{
    this->files.addFile("file");

    EXPECT_EQ(this->errorOf("file/entry"), ENOTDIR);
    EXPECT_EQ(this->errorOf("file/"), ENOTDIR);
    EXPECT_FALSE(this->exists("file/entry"));
}

TYPED_TEST(FileSystemContractTest, FindsALinkThatLeadsNowhereWithoutCallingItExisting)
{
    this->files.addLink("dangling", "nowhere");

    EXPECT_EQ(this->errorOf("dangling"), 0);
    EXPECT_FALSE(this->exists("dangling"));
}

TYPED_TEST(FileSystemContractTest, SaysThatALinkWithATargetExists)
{
    this->files.addFile("file");
    this->files.addLink("link", "file");
    this->files.addLink("farther", "link");

    EXPECT_TRUE(this->exists("file"));
    EXPECT_TRUE(this->exists("farther"));
}

TYPED_TEST(FileSystemContractTest, SaysThatLinksInACircleLeadNowhere)
{
    this->files.addLink("one", "other");
    this->files.addLink("other", "one");

    EXPECT_FALSE(this->exists("one"));
    EXPECT_EQ(this->errorOf("one"), 0);
    EXPECT_EQ(this->errorOf("one/entry"), ELOOP);
}

TYPED_TEST(FileSystemContractTest, GivesEachObjectItsOwnNumberForLife)
{
    this->files.addFile("one");
    this->files.addFile("other");
    const auto before = this->stat("one");

    this->files.rename("one", "renamed");

    EXPECT_EQ(this->stat("renamed").inode, before.inode);
    EXPECT_EQ(this->stat("renamed").device, before.device);
    EXPECT_NE(this->stat("other").inode, before.inode);
    EXPECT_EQ(this->errorOf("one"), ENOENT);
}

TYPED_TEST(FileSystemContractTest, MovesWhatIsBelowAFolderWithIt)
{
    this->files.addFolder("folder");
    this->files.addFile("folder/file");
    const auto inode = this->stat("folder/file").inode;

    this->files.rename("folder", "renamed");

    EXPECT_EQ(this->stat("renamed/file").inode, inode);
    EXPECT_EQ(this->errorOf("folder/file"), ENOENT);
}

TYPED_TEST(FileSystemContractTest, PutsAFileInTheOthersPlace)
{
    this->files.addFile("old");
    this->files.addFile("new");
    const auto inode = this->stat("new").inode;

    this->files.rename("new", "old");

    EXPECT_EQ(this->stat("old").inode, inode);
}

TYPED_TEST(FileSystemContractTest, CountsTheNamesOfAFile)
{
    this->files.addFile("one");
    this->files.addHardLink("one", "other");

    EXPECT_EQ(this->stat("other").inode, this->stat("one").inode);
    EXPECT_EQ(this->stat("one").linkCount, 2u);
    this->files.remove("one");
    EXPECT_EQ(this->stat("other").linkCount, 1u);
}

TYPED_TEST(FileSystemContractTest, TellsAWriteByTheTimeStamps)
{
    this->files.addFile("file");
    const auto before = this->modificationTime("file");
    const auto birth = this->stat("file").birthTime;

    // Within one tick of the kernel's clock the stamp may stay the same.
    do
        this->files.write("file");
    while (this->modificationTime("file") == before);

    EXPECT_GT(this->modificationTime("file"), before);
    EXPECT_EQ(this->stat("file").birthTime, birth);
}

TYPED_TEST(FileSystemContractTest, GivesEachObjectItsOwnHandleForLife)
{
    this->files.addFile("one");
    this->files.addFile("other");
    const auto before = this->handle("one");
    if (!before.isKnown())
        GTEST_SKIP() << "this file system has no handles";

    this->files.rename("one", "renamed");

    EXPECT_EQ(this->handle("renamed"), before);
    EXPECT_FALSE(this->handle("other") == before);
}

TYPED_TEST(FileSystemContractTest, GivesALinkAHandleOfItsOwn)
{
    this->files.addFile("file");
    this->files.addLink("link", "file");
    if (!this->handle("file").isKnown())
        GTEST_SKIP() << "this file system has no handles";

    EXPECT_TRUE(this->handle("link").isKnown());
    EXPECT_FALSE(this->handle("link") == this->handle("file"));
}

TYPED_TEST(FileSystemContractTest, KnowsNoHandleWhereNothingIs)
{
    EXPECT_FALSE(this->handle("missing").isKnown());
}

TYPED_TEST(FileSystemContractTest, TakesNamesOfAnyBytesUpTo255)
{
    std::string name(255, 'n');
    name[0] = '\xff';
    name[1] = '\n';
    this->files.addFile(name);

    EXPECT_EQ(this->errorOf(name), 0);
    EXPECT_TRUE(this->exists(name));
    EXPECT_EQ(this->errorOf(name + "n"), ENAMETOOLONG);
}

TYPED_TEST(FileSystemContractTest, RefusesPathsThatAreTooLong)
{
    std::string path = this->files.path("");
    while (path.size() < PATH_MAX)
        path += "/.";
    zef::Stat stat;

    EXPECT_EQ(this->files.service().statLink(path.c_str(), stat), ENAMETOOLONG);
    EXPECT_FALSE(this->files.service().exists(path.c_str()));
}

// --- The real one alone -------------------------------------------------------------------------

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

// --- The fake alone -----------------------------------------------------------------------------

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

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include "tests/support/FakeFileSystem.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <string>
#include <type_traits>

#include <sys/stat.h>

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

} // namespace

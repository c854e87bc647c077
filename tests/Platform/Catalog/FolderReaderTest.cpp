// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Catalog/FolderReader.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

/// Reads the folder "read", now with a descriptor and now without.
class FolderReaderTest : public testing::Test {
protected:
    // More than fit into one read of the system's.
    static constexpr std::size_t many = 3000;

    FolderReaderTest() { folder.makeFolder("read"); }

    /// The names in alphabetical order.
    Names writeFiles(std::size_t count)
    {
        Names names;
        for (std::size_t number = 0; number < count; ++number) {
            names.push_back("file number " + std::to_string(number));
            folder.write("read/" + names.back(), "");
        }
        return sorted(std::move(names));
    }

    static Names sorted(Names names)
    {
        std::sort(names.begin(), names.end());
        return names;
    }

    zef::Stat stat(std::string_view name) const
    {
        zef::Stat result;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), result);
        return result;
    }

    zef::FSRef ref(std::string_view name) const
    {
        const auto slash = name.rfind('/');
        const auto parent = slash == std::string_view::npos ? "." : name.substr(0, slash);
        return zef::FSRef(stat(name), stat(parent).inode);
    }

    int open() { return reader.open(ref("read"), folder.folderUrl("read")); }

    int openIn(zef::FolderReader& subfolder, const char* name)
    {
        const auto path = "read/" + std::string(name);
        return subfolder.openIn(reader, name, ref(path), folder.folderUrl(path));
    }

    /// Reads so many more entries, or as many as there are.
    static Names readOn(zef::FolderReader& reader, std::size_t count)
    {
        Names names;
        zef::FolderReader::Entry entry{};
        while (names.size() < count && reader.next(entry))
            names.emplace_back(entry.name, entry.nameLength);
        return names;
    }

    Names readOn(std::size_t count) { return readOn(reader, count); }
    Names readAll() { return readOn(reader, many * 2); }

    TemporaryFolder folder;
    zef::FolderReader reader;
};

TEST_F(FolderReaderTest, ReadsEachEntryOnceAndNeitherDotNorDotDot)
{
    const auto names = writeFiles(many);
    ASSERT_EQ(open(), 0);

    EXPECT_EQ(sorted(readAll()), names);
    EXPECT_EQ(reader.error(), 0);
}

TEST_F(FolderReaderTest, TellsTheNumbersOfEntries)
{
    folder.write("read/file");
    ASSERT_EQ(open(), 0);
    zef::FolderReader::Entry entry{};

    ASSERT_TRUE(reader.next(entry));
    EXPECT_STREQ(entry.name, "file");
    EXPECT_EQ(entry.nameLength, 4u);
    EXPECT_EQ(entry.inode, stat("read/file").inode);
}

TEST_F(FolderReaderTest, OpensNothingButTheFolderThatIsMeant)
{
    folder.write("file");
    folder.symlink("read", "link");

    EXPECT_EQ(reader.open(zef::FSRef(), folder.folderUrl("read")), EINVAL);
    EXPECT_EQ(reader.open(ref("file"), folder.url("file")), ENOTDIR);
    EXPECT_EQ(reader.open(ref("link"), folder.url("link")), ENOTDIR);
    EXPECT_LT(reader.folder(), 0);
}

TEST_F(FolderReaderTest, SaysAtTheFirstReadThatAFolderMayNotBeRead)
{
    writeFiles(1);
    folder.chmod("read", 0300);
    const WithoutPrivileges user;
    ASSERT_EQ(open(), 0);

    EXPECT_THAT(readAll(), IsEmpty());
    EXPECT_EQ(reader.error(), EACCES);
}

// --- Suspended

TEST_F(FolderReaderTest, HoldsNoDescriptorWhileItIsSuspended)
{
    writeFiles(1);
    ASSERT_EQ(open(), 0);
    EXPECT_GE(reader.folder(), 0);
    readOn(1);

    reader.suspend();
    EXPECT_LT(reader.folder(), 0);
    EXPECT_TRUE(reader.resume());
    EXPECT_GE(reader.folder(), 0);
}

TEST_F(FolderReaderTest, DeliversEachEntryOnceThatItHadNotReadWhenItWasSuspended)
{
    const auto names = writeFiles(many);
    ASSERT_EQ(open(), 0);
    auto found = readOn(100);
    reader.suspend();

    const auto rest = readAll();
    found.insert(found.end(), rest.begin(), rest.end());
    EXPECT_EQ(sorted(found), names);
    EXPECT_LT(reader.folder(), 0);
    EXPECT_EQ(reader.error(), 0);
}

TEST_F(FolderReaderTest, DeliversEachEntryOnceWhenItIsSuspendedTwice)
{
    const auto names = writeFiles(many);
    ASSERT_EQ(open(), 0);
    Names found;
    for (const std::size_t count : { std::size_t(100), many / 2, many }) {
        const auto next = readOn(count);
        found.insert(found.end(), next.begin(), next.end());
        reader.suspend();
        reader.suspend();
        EXPECT_TRUE(reader.resume());
    }
    const auto rest = readAll();
    found.insert(found.end(), rest.begin(), rest.end());

    EXPECT_EQ(sorted(found), names);
}

TEST_F(FolderReaderTest, ReadsEverythingWhenItIsSuspendedBeforeTheFirstRead)
{
    const auto names = writeFiles(many);
    ASSERT_EQ(open(), 0);
    reader.suspend();

    EXPECT_EQ(sorted(readAll()), names);
}

TEST_F(FolderReaderTest, StaysAtItsEndWhenItIsSuspendedThere)
{
    writeFiles(3);
    ASSERT_EQ(open(), 0);
    readAll();
    reader.suspend();

    EXPECT_THAT(readAll(), IsEmpty());
    EXPECT_TRUE(reader.resume());
    EXPECT_THAT(readAll(), IsEmpty());
    EXPECT_EQ(reader.error(), 0);
}

TEST_F(FolderReaderTest, SuspendsAFolderThatMayNotBeRead)
{
    writeFiles(1);
    folder.chmod("read", 0300);
    const WithoutPrivileges user;
    ASSERT_EQ(open(), 0);
    reader.suspend();

    EXPECT_THAT(readAll(), IsEmpty());
    EXPECT_EQ(reader.error(), EACCES);
}

TEST_F(FolderReaderTest, FindsItsFolderAgainThatWasRenamedMeanwhile)
{
    const auto names = writeFiles(50);
    ASSERT_EQ(open(), 0);
    auto found = readOn(10);
    reader.suspend();
    folder.rename("read", "renamed");
    folder.makeFolder("read"); // not the one that is meant

    EXPECT_TRUE(reader.resume());
    EXPECT_GE(reader.folder(), 0);
    const auto rest = readAll();
    found.insert(found.end(), rest.begin(), rest.end());
    EXPECT_EQ(sorted(found), names);
}

TEST_F(FolderReaderTest, SaysThatItsFolderIsGoneWhenItIsToBeOpenedAgain)
{
    writeFiles(50);
    ASSERT_EQ(open(), 0);
    readOn(10);
    reader.suspend();
    folder.remove("read");

    EXPECT_FALSE(reader.resume());
    EXPECT_EQ(reader.error(), ENOENT);
}

TEST_F(FolderReaderTest, SaysThatItsFolderIsGoneAlsoWhenItReadNothingBefore)
{
    writeFiles(50);
    ASSERT_EQ(open(), 0);
    reader.suspend();
    folder.remove("read");

    EXPECT_THAT(readAll(), IsEmpty());
    EXPECT_EQ(reader.error(), ENOENT);
}

TEST_F(FolderReaderTest, OpensAFolderInAnother)
{
    folder.makeFolder("read/sub");
    folder.write("read/sub/file");
    ASSERT_EQ(open(), 0);
    zef::FolderReader subfolder;

    ASSERT_EQ(openIn(subfolder, "sub"), 0);
    EXPECT_THAT(readOn(subfolder, many), ElementsAre("file"));
}

TEST_F(FolderReaderTest, OpensAFolderInAnotherThatWasMoved)
{
    folder.makeFolder("read/sub");
    folder.write("read/sub/file");
    ASSERT_EQ(open(), 0);
    const auto subfolderRef = ref("read/sub");
    const auto url = folder.folderUrl("read/sub");
    folder.rename("read", "moved");
    zef::FolderReader subfolder;

    ASSERT_EQ(subfolder.openIn(reader, "sub", subfolderRef, url), 0);
    EXPECT_THAT(readOn(subfolder, many), ElementsAre("file"));
}

TEST_F(FolderReaderTest, ResumesAFolderToOpenOneInIt)
{
    folder.makeFolder("read/sub");
    ASSERT_EQ(open(), 0);
    reader.suspend();
    zef::FolderReader subfolder;

    EXPECT_EQ(openIn(subfolder, "sub"), 0);
    EXPECT_GE(reader.folder(), 0);
}

TEST_F(FolderReaderTest, OpensNothingInAFolderThatCantBeResumed)
{
    folder.makeFolder("read/sub");
    ASSERT_EQ(open(), 0);
    const auto subfolderRef = ref("read/sub");
    reader.suspend();
    folder.remove("read");
    zef::FolderReader subfolder;

    EXPECT_EQ(subfolder.openIn(reader, "sub", subfolderRef, folder.folderUrl("read/sub")), EBADF);
}

TEST_F(FolderReaderTest, GetsBackFromFoldersBelowWhereverTheyWereMoved)
{
    folder.makeFolder("read/a");
    folder.makeFolder("read/a/b");
    folder.makeFolder("far");
    folder.makeFolder("far/away");
    ASSERT_EQ(open(), 0);
    zef::FolderReader a;
    zef::FolderReader b;
    ASSERT_EQ(openIn(a, "a"), 0);
    ASSERT_EQ(b.openIn(a, "b", ref("read/a/b"), folder.folderUrl("read/a/b")), 0);
    reader.suspend();
    a.suspend();
    a.resumeFrom(b);
    reader.resumeFrom(a);
    zef::FolderReader other;
    ASSERT_EQ(other.open(ref("far"), folder.folderUrl("far")), 0);
    reader.resumeFrom(other);
    folder.rename("read", "far/away/moved");

    EXPECT_TRUE(reader.resume());
    EXPECT_THAT(readAll(), ElementsAre("a"));
}

TEST_F(FolderReaderTest, GetsBackFromVeryFarBelow)
{
    constexpr std::size_t levels = 250;
    std::string path = "read";
    for (std::size_t level = 0; level < levels; ++level)
        folder.makeFolder(path += "/d");
    path = "read";
    ASSERT_EQ(open(), 0);
    std::vector<std::unique_ptr<zef::FolderReader>> below;
    for (std::size_t level = 0; level < levels; ++level) {
        auto& above = below.empty() ? reader : *below.back();
        path += "/d";
        auto next = std::make_unique<zef::FolderReader>();
        ASSERT_EQ(next->openIn(above, "d", ref(path), folder.folderUrl(path)), 0);
        above.suspend();
        below.push_back(std::move(next));
    }
    folder.rename("read", "moved");
    while (below.size() > 1) {
        const auto last = std::move(below.back());
        below.pop_back();
        below.back()->resumeFrom(*last);
    }
    reader.resumeFrom(*below.front());

    EXPECT_TRUE(reader.resume());
    EXPECT_THAT(readAll(), ElementsAre("d"));
}

TEST_F(FolderReaderTest, OpensInAnotherOnlyWhatIsMeant)
{
    folder.makeFolder("read/sub");
    folder.makeFolder("read/other");
    folder.write("read/file");
    folder.symlink("sub", "read/link");
    ASSERT_EQ(open(), 0);
    zef::FolderReader subfolder;

    EXPECT_EQ(
        subfolder.openIn(reader, "sub", ref("read/other"), folder.folderUrl("read/sub")), ENOENT);
    EXPECT_EQ(openIn(subfolder, "file"), ENOTDIR);
    EXPECT_EQ(openIn(subfolder, "link"), ENOTDIR);
    folder.remove("read/sub");
    EXPECT_EQ(
        subfolder.openIn(reader, "sub", ref("read/other"), folder.folderUrl("read/sub")), ENOENT);
    EXPECT_LT(subfolder.folder(), 0);
}

TEST_F(FolderReaderTest, OpensAFolderInAnotherThatMayNotBeRead)
{
    folder.makeFolder("read/sub");
    folder.write("read/sub/file");
    ASSERT_EQ(open(), 0);
    folder.chmod("read/sub", 0300);
    const WithoutPrivileges user;
    zef::FolderReader subfolder;

    ASSERT_EQ(openIn(subfolder, "sub"), 0);
    EXPECT_THAT(readOn(subfolder, many), IsEmpty());
    EXPECT_EQ(subfolder.error(), EACCES);
}

TEST_F(FolderReaderTest, SuspendsAFolderThatWasOpenedInAnother)
{
    folder.makeFolder("read/sub");
    folder.write("read/sub/file");
    ASSERT_EQ(open(), 0);
    zef::FolderReader subfolder;
    ASSERT_EQ(openIn(subfolder, "sub"), 0);
    reader.suspend();
    subfolder.suspend();

    EXPECT_THAT(readOn(subfolder, many), ElementsAre("file"));
}

} // namespace

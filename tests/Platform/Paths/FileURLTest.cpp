// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

namespace {

using zef::FileURL;
using zef::URLKind;

FileURL file(std::string_view path)
{
    return FileURL::fromPath(path, URLKind::file);
}

FileURL folder(std::string_view path)
{
    return FileURL::fromPath(path, URLKind::folder);
}

TEST(FileURLTest, IsNilWithoutAPath)
{
    const FileURL nil;

    EXPECT_FALSE(nil);
    EXPECT_FALSE(file(""));
    EXPECT_FALSE(folder(""));
    EXPECT_FALSE(file(std::string_view("/a\0b", 4)));
}

TEST(FileURLTest, AnswersForNil)
{
    const FileURL nil = nullptr;
    zef::PathBytes bytes;
    bytes.append("left over");

    EXPECT_EQ(nil.absoluteString(), "");
    EXPECT_EQ(nil.path(), "");
    EXPECT_EQ(nil.lastPathComponent(), "");
    EXPECT_EQ(nil.name(), "");
    EXPECT_EQ(nil.pathExtension(), "");
    EXPECT_FALSE(nil.hasDirectoryPath());
    EXPECT_FALSE(nil.fileSystemRepresentation(bytes));
    EXPECT_EQ(bytes.view(), "");
    EXPECT_FALSE(nil.deletingLastPathComponent());
    EXPECT_FALSE(nil.appendingPathComponent("a", URLKind::file));
    EXPECT_FALSE(nil.withKind(URLKind::folder));
    EXPECT_FALSE(nil.isDirectlyIn(folder("/")));
    EXPECT_FALSE(file("/a").isDirectlyIn(nil));
    EXPECT_FALSE(nil.asFolder());
}

TEST(FileURLTest, EndsInASlashForAFolderOnly)
{
    EXPECT_EQ(file("/a/b").absoluteString(), "file:///a/b");
    EXPECT_EQ(folder("/a/b").absoluteString(), "file:///a/b/");
    EXPECT_FALSE(file("/a/b").hasDirectoryPath());
    EXPECT_TRUE(folder("/a/b").hasDirectoryPath());
}

TEST(FileURLTest, TakesItsMarkFromTheKindAndNotFromThePath)
{
    EXPECT_EQ(file("/a/b/"), file("/a/b"));
    EXPECT_EQ(folder("/a/b/"), folder("/a/b"));
}

TEST(FileURLTest, MakesOneSlashOfMany)
{
    EXPECT_EQ(file("//a///b//").absoluteString(), "file:///a/b");
    EXPECT_EQ(folder("///").absoluteString(), "file:///");
}

TEST(FileURLTest, LeavesDotsInAPath)
{
    EXPECT_EQ(file("/a/./b/../c").absoluteString(), "file:///a/./b/../c");
}

TEST(FileURLTest, IsAFolderForTheRoot)
{
    EXPECT_EQ(file("/"), folder("/"));
    EXPECT_EQ(file("/").absoluteString(), "file:///");
    EXPECT_TRUE(file("/").hasDirectoryPath());
    EXPECT_EQ(file("/").withKind(URLKind::file), folder("/"));
}

TEST(FileURLTest, IsEqualToOneWithTheSameStringOnly)
{
    EXPECT_EQ(file("/a/b"), file("/a/b"));
    EXPECT_FALSE(file("/a/b") == folder("/a/b"));
    EXPECT_FALSE(file("/a/b") == file("/a/c"));
    EXPECT_FALSE(file("/a/b") == file("/c/b"));
    EXPECT_FALSE(file("/a/b") == FileURL());
    EXPECT_TRUE(FileURL() == FileURL());
}

TEST(FileURLTest, ComparesPathsWithoutTheirMarks)
{
    EXPECT_TRUE(file("/a/b").hasPathOf(folder("/a/b")));
    EXPECT_FALSE(file("/a/b").hasPathOf(file("/a/c")));
    EXPECT_FALSE(file("/a/b").hasPathOf(file("/c/b")));
    EXPECT_FALSE(FileURL().hasPathOf(FileURL()));
    EXPECT_FALSE(file("/a").hasPathOf(FileURL()));
}

TEST(FileURLTest, KeepsEqualURLsApartFromThoseThatBecomeOthers)
{
    auto one = file("/a/b");
    const auto other = one;
    one = file("/c");

    EXPECT_EQ(other, file("/a/b"));
    auto moved = std::move(one);
    EXPECT_EQ(moved, file("/c"));
}

TEST(FileURLTest, GivesThePathWithoutASlashAtItsEnd)
{
    EXPECT_EQ(file("/a/b").path(), "/a/b");
    EXPECT_EQ(folder("/a/b").path(), "/a/b");
    EXPECT_EQ(folder("/").path(), "/");
    EXPECT_EQ(file("/a \xff%").path(), "/a \xff%");
}

TEST(FileURLTest, RepresentsAPathForTheFileSystemWithoutASlashAtItsEnd)
{
    zef::PathBytes bytes;

    EXPECT_TRUE(folder("/a/b").fileSystemRepresentation(bytes));
    EXPECT_STREQ(bytes.text(), "/a/b");
    EXPECT_TRUE(folder("/").fileSystemRepresentation(bytes));
    EXPECT_STREQ(bytes.text(), "/");
    EXPECT_TRUE(file("/\xff\n").fileSystemRepresentation(bytes));
    EXPECT_STREQ(bytes.text(), "/\xff\n");
}

TEST(FileURLTest, RepresentsPathsUpToTheSystemsLimit)
{
    const std::string longest = "/" + std::string(PATH_MAX - 2, 'n');
    zef::PathBytes bytes;

    EXPECT_TRUE(folder(longest).fileSystemRepresentation(bytes));
    EXPECT_EQ(bytes.view(), longest);
    EXPECT_FALSE(file(longest + "n").fileSystemRepresentation(bytes));
    EXPECT_FALSE(file(longest + "/n").fileSystemRepresentation(bytes));
    EXPECT_EQ(file(longest + "n").path(), longest + "n");
}

TEST(FileURLTest, NamesTheLastComponent)
{
    EXPECT_EQ(file("/a/b c").lastPathComponent(), "b c");
    EXPECT_EQ(folder("/a/b").lastPathComponent(), "b");
    EXPECT_EQ(folder("/").lastPathComponent(), "/");
    EXPECT_EQ(folder("/a/b").name(), "b");
    EXPECT_EQ(folder("/").name(), "");
}

TEST(FileURLTest, TakesTheExtensionAfterTheLastDot)
{
    EXPECT_EQ(file("/a/b.txt").pathExtension(), "txt");
    EXPECT_EQ(file("/a/b.tar.gz").pathExtension(), "gz");
    EXPECT_EQ(folder("/a/B.app").pathExtension(), "app");
    EXPECT_EQ(file("/a/.b.c").pathExtension(), "c");
}

TEST(FileURLTest, HasNoExtensionWithoutADotInTheName)
{
    EXPECT_EQ(file("/a.b/c").pathExtension(), "");
    EXPECT_EQ(file("/a/.profile").pathExtension(), "");
    EXPECT_EQ(file("/a/b.").pathExtension(), "");
    EXPECT_EQ(file("/a/Vol. 2 of 3").pathExtension(), "");
    EXPECT_EQ(folder("/").pathExtension(), "");
}

TEST(FileURLTest, DeletesTheLastComponent)
{
    EXPECT_EQ(file("/a/b/c").deletingLastPathComponent(), folder("/a/b"));
    EXPECT_EQ(folder("/a/b").deletingLastPathComponent(), folder("/a"));
    EXPECT_EQ(file("/a").deletingLastPathComponent(), folder("/"));
    EXPECT_EQ(folder("/").deletingLastPathComponent(), folder("/"));
}

TEST(FileURLTest, AppendsAComponent)
{
    EXPECT_EQ(folder("/a").appendingPathComponent("b", URLKind::file), file("/a/b"));
    EXPECT_EQ(file("/a").appendingPathComponent("b", URLKind::folder), folder("/a/b"));
    EXPECT_EQ(folder("/").appendingPathComponent("b", URLKind::file), file("/b"));
    EXPECT_EQ(folder("/a").appendingPathComponent("%\n", URLKind::file), file("/a/%\n"));
}

TEST(FileURLTest, ChangesItsMark)
{
    EXPECT_EQ(file("/a/b").withKind(URLKind::folder), folder("/a/b"));
    EXPECT_EQ(folder("/a/b").withKind(URLKind::file), file("/a/b"));
    EXPECT_EQ(folder("/a/b").withKind(URLKind::folder), folder("/a/b"));
}

TEST(FileURLTest, IsDirectlyInTheFolderThatDeletingYields)
{
    const FileURL urls[] = { file("/a/b"), folder("/a/b"), file("/a"), folder("/"), file("/ab/c"),
        file("/a/b/c"), file("/b") };
    const FileURL folders[] = { folder("/"), folder("/a"), file("/a"), folder("/a/b"),
        folder("/ab"), folder("/b") };
    for (const auto& url : urls) {
        for (const auto& candidate : folders) {
            EXPECT_EQ(url.isDirectlyIn(candidate), url.deletingLastPathComponent() == candidate)
                << url.absoluteString() << " in " << candidate.absoluteString();
        }
    }
}

TEST(FileURLTest, SharesThePathOfItsFolder)
{
    const auto one = file("/a/b");
    const auto other = folder("/a/c");
    const auto parent = folder("/a");

    EXPECT_EQ(&one.parentFolder(), &other.parentFolder());
    EXPECT_EQ(parent.asFolder().get(), &one.parentFolder());
    EXPECT_EQ(file("/a").asFolder(), parent.asFolder());
    EXPECT_EQ(one.parentFolder().bytes(), "/a/");
    EXPECT_EQ(folder("/").asFolder()->bytes(), "/");
    EXPECT_EQ(folder("/").parentFolder().bytes(), "/");
}

TEST(FileURLTest, IsMadeInAFolderFromAName)
{
    const auto parent = folder("/a").asFolder();

    EXPECT_EQ(FileURL::inFolder(parent, "b", URLKind::file), file("/a/b"));
    EXPECT_EQ(FileURL::inFolder(parent, "b", URLKind::folder), folder("/a/b"));
    EXPECT_EQ(FileURL::inFolder(folder("/").asFolder(), "b", URLKind::file), file("/b"));
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <unistd.h>

namespace {

using zef::FileURL;
using zef::URLKind;

std::string normalized(std::string_view text)
{
    return FileURL::fromString(text).absoluteString();
}

TEST(FileURLTextTest, EscapesAllButTheCharactersOfPaths)
{
    const std::string unescaped = "ABCXYZabcxyz0189-._~!$&'()*+,:=@";
    EXPECT_EQ(
        FileURL::fromPath("/" + unescaped, URLKind::file).absoluteString(), "file:///" + unescaped);
    EXPECT_EQ(FileURL::fromPath("/ \"#%;<>?[\\]^`{|}", URLKind::file).absoluteString(),
        "file:///%20%22%23%25%3B%3C%3E%3F%5B%5C%5D%5E%60%7B%7C%7D");
}

TEST(FileURLTextTest, EscapesRawBytesInUpperCase)
{
    EXPECT_EQ(FileURL::fromPath("/\xff\xc3\xa9\n\x01\x7f", URLKind::file).absoluteString(),
        "file:///%FF%C3%A9%0A%01%7F");
}

TEST(FileURLTextTest, ReadsBackWhatItWritesForEveryByte)
{
    for (int value = 1; value < 256; ++value) {
        if (value == '/')
            continue;
        const std::string path = std::string("/a") + static_cast<char>(value) + "b";
        for (const auto kind : { URLKind::file, URLKind::folder }) {
            const auto url = FileURL::fromPath(path, kind);
            EXPECT_EQ(FileURL::fromString(url.absoluteString()), url) << value;
            EXPECT_EQ(url.path(), path);
        }
    }
}

TEST(FileURLTextTest, AcceptsTheFormsOfAFileURL)
{
    for (const auto* text : { "file:/a/b", "file:///a/b", "FILE:///a/b", "fIlE:/a/b",
             "file://localhost/a/b", "file://LocalHost/a/b", "file:////a//b" })
        EXPECT_EQ(normalized(text), "file:///a/b") << text;
}

TEST(FileURLTextTest, TakesTheMarkFromASlashAtTheEnd)
{
    EXPECT_EQ(normalized("file:///a/b/"), "file:///a/b/");
    EXPECT_EQ(normalized("file:///a/b//"), "file:///a/b/");
    EXPECT_EQ(normalized("file:///"), "file:///");
    EXPECT_EQ(normalized("file:/"), "file:///");
}

TEST(FileURLTextTest, WritesEscapesInOneWay)
{
    EXPECT_EQ(normalized("file:///%7e%41%ff"), "file:///~A%FF");
    EXPECT_EQ(normalized("file:///a b\xff"), "file:///a%20b%FF");
    EXPECT_EQ(normalized("file:///%3f%23"), "file:///%3F%23");
    EXPECT_EQ(FileURL::fromString("file:///%7E"), FileURL::fromString("file:///~"));
}

TEST(FileURLTextTest, RefusesWhatIsNoFileURL)
{
    for (const auto* text : { "", "/a", "a", "file:", "file:a", "file://", "http:///a",
             "files:///a", "file//a", "file://host/a", "file://localhost", "file://localhostess/a",
             "file:localhost/a", " file:///a" })
        EXPECT_FALSE(FileURL::fromString(text)) << text;
}

TEST(FileURLTextTest, RefusesQueriesFragmentsAndBadEscapes)
{
    for (const auto* text : { "file:///a?b", "file:///a#b", "file:///a%", "file:///a%4",
             "file:///a%4g", "file:///a%g4", "file:///a%%41", "file:///a%2Fb", "file:///a%2fb",
             "file:///a%00b", "file:///a?", "file:///#" })
        EXPECT_FALSE(FileURL::fromString(text)) << text;
    EXPECT_FALSE(FileURL::fromString(std::string_view("file:///a\0b", 11)));
}

TEST(FileURLTextTest, TakesARelativePathFromTheCurrentFolder)
{
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());

    const auto url = FileURL::fromPath("a//b/", URLKind::file);
    const auto dot = FileURL::fromPath(".", URLKind::folder);

    std::filesystem::current_path(before);
    EXPECT_EQ(url, folder.url("a/b"));
    EXPECT_EQ(dot.path(), folder.path() + "/.");
}

TEST(FileURLTextTest, TakesARelativePathFromTheRoot)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path("/");

    const auto url = FileURL::fromPath("a", URLKind::file);

    std::filesystem::current_path(before);
    EXPECT_EQ(url.absoluteString(), "file:///a");
}

TEST(FileURLTextTest, MakesNothingOfARelativePathWithoutACurrentFolder)
{
    runInChildProcess([] {
        TemporaryFolder folder;
        ASSERT_EQ(::chdir(folder.path().c_str()), 0);
        ASSERT_EQ(::rmdir(folder.path().c_str()), 0);

        EXPECT_FALSE(FileURL::fromPath("a", URLKind::file));
    });
}

} // namespace

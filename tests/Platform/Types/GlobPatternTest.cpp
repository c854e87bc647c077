// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/GlobPattern.h"

#include <gtest/gtest.h>

#include <string>

#include <fnmatch.h>

namespace {

TEST(GlobPatternTest, KnowsTheKindsOfGlobs)
{
    EXPECT_EQ(zef::kindOfGlob("Makefile"), zef::GlobKind::literal);
    EXPECT_EQ(zef::kindOfGlob("*.tar.gz"), zef::GlobKind::ending);
    for (const char* glob : { "*", "*.", "*~", "*.[1-9]", "*.a*", "*.a?", "a*.b", "?.b" })
        EXPECT_EQ(zef::kindOfGlob(glob), zef::GlobKind::general) << glob;
}

TEST(GlobPatternTest, MatchesWhatTheSystemsOwnFunctionMatches)
{
    const char* const globs[] = { "", "*", "**", "a", "a*", "*a", "*a*", "a*b*c", "?", "??", "a?c",
        "[ab]", "[!ab]", "[^ab]", "[a-c]x", "[]a]", "[!]a]", "[a-]", "[", "[a", "a[", "*.[1-9]",
        "*.so.[0-9]*", "readme*", "*[0-9][0-9].vdr", "*a*b*a*", "[*]", "[?]", "a**b" };
    const char* const names[] = { "", "a", "b", "c", "-", "]", "[", "[a", "a[", "*", "ab", "abc",
        "aXbYc", "cx", "dx", "a.1", "a.0", "x.so.1", "x.so.1.2", "x.so", "readme", "readme.txt",
        "x01.vdr", "ababa", "aab", "!", "^" };

    for (const char* glob : globs) {
        for (const char* name : names)
            EXPECT_EQ(zef::matchesGlob(name, glob, false), ::fnmatch(glob, name, 0) == 0)
                << glob << " " << name;
    }
}

TEST(GlobPatternTest, LeavesCaseAsideWhenAskedTo)
{
    EXPECT_TRUE(zef::matchesGlob("README.Txt", "readme*", true));
    EXPECT_TRUE(zef::matchesGlob("readme", "README*", true));
    EXPECT_TRUE(zef::matchesGlob("X", "[w-y]", true));
    EXPECT_FALSE(zef::matchesGlob("README", "readme*", false));
}

TEST(GlobPatternTest, ABackslashIsAnOrdinaryByte)
{
    EXPECT_TRUE(zef::matchesGlob("a\\b", "?\\*", false));
    EXPECT_FALSE(zef::matchesGlob("a*", "a\\*", false));
}

TEST(GlobPatternTest, ManyStarsTakeNoLongTime)
{
    std::string glob;
    for (auto count = 0; count < 100; ++count)
        glob += "*a";
    glob += "*b";

    EXPECT_FALSE(zef::matchesGlob(std::string(255, 'a'), glob, false));
    EXPECT_TRUE(zef::matchesGlob(std::string(254, 'a') + 'b', glob, false));
}

} // namespace

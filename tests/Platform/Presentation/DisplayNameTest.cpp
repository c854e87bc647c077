// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/DisplayName.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

TEST(DisplayNameTest, ShowsValidTextAsItIs)
{
    for (const auto name : { ""sv, "plain.txt"sv, "Übung"sv, "日本語"sv, "𝄞 clef"sv, "\x7f\n\t"sv,
             "\xC2\x80"sv, "\xDF\xBF"sv, "\xE0\xA0\x80"sv, "\xED\x9F\xBF"sv, "\xEE\x80\x80"sv,
             "\xF0\x90\x80\x80"sv, "\xF4\x8F\xBF\xBF"sv })
        EXPECT_EQ(zef::displayNameOfBytes(name), name);
}

TEST(DisplayNameTest, ShowsEachByteThatIsNoTextAsAReplacementCharacter)
{
    EXPECT_EQ(zef::displayNameOfBytes("a\xFFz"), "a\uFFFDz");
    EXPECT_EQ(zef::displayNameOfBytes("\xFF\xFE"), "\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("Gr\xFC\xDF"
                                      "e"),
        "Gr\uFFFD\uFFFDe");
}

TEST(DisplayNameTest, ReplacesEachByteOfACharacterThatIsCutOff)
{
    EXPECT_EQ(zef::displayNameOfBytes("\xC3"), "\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xE2\x82"), "\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xF0\x9D\x84"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xE2\x82z"), "\uFFFD\uFFFDz");
    EXPECT_EQ(zef::displayNameOfBytes("\x80z"), "\uFFFDz");
}

TEST(DisplayNameTest, ReplacesSpellingsThatAreNotTheShortest)
{
    EXPECT_EQ(zef::displayNameOfBytes("\xC0\xAF"), "\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xC1\xBF"), "\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xE0\x9F\xBF"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xF0\x8F\xBF\xBF"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(DisplayNameTest, ReplacesSurrogatesAndCodesThatDoNotExist)
{
    EXPECT_EQ(zef::displayNameOfBytes("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xED\xBF\xBF"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(zef::displayNameOfBytes("\xF5\x80\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(DisplayNameTest, AcceptsNamesThatCanBeShown)
{
    for (const auto name : { "a"sv, " a "sv, "Übung 日本語"sv, "a\xC2\xA0z"sv })
        EXPECT_TRUE(zef::isDisplayable(name)) << name;
}

TEST(DisplayNameTest, RefusesNamesThatShowNothing)
{
    EXPECT_FALSE(zef::isDisplayable(""));
    EXPECT_FALSE(zef::isDisplayable("   "));
}

TEST(DisplayNameTest, RefusesControlCharactersAndWhatIsNoText)
{
    for (const auto name : { "a\nz"sv, "\x1b[2J"sv, "a\x7f"sv, "a\0z"sv, "a\tz"sv, "\xC2\x80z"sv,
             "\xC2\x9F"sv, "a\xFF"sv, "\xC3"sv })
        EXPECT_FALSE(zef::isDisplayable(name)) << name;
}

} // namespace

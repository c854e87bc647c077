// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntry.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using zef::DesktopEntry;
using zef::MessageLocale;
using Kind = DesktopEntry::Kind;

DesktopEntry parsed(std::string_view text, std::string_view locale = "")
{
    return { text, MessageLocale(locale) };
}

// An entry with these lines in its group.
DesktopEntry entry(std::string_view lines, std::string_view locale = "")
{
    return parsed("[Desktop Entry]\n" + std::string(lines), locale);
}

std::string targetOf(const std::string& url)
{
    return entry("Type=Link\nURL=" + url).target();
}

std::string nameFrom(const std::string& value)
{
    return entry("Type=Link\nName=" + value + "\n").name();
}

TEST(DesktopEntryTest, SaysNothingByItself)
{
    const DesktopEntry nothing;

    EXPECT_EQ(nothing.kind(), Kind::other);
    EXPECT_EQ(nothing.name(), "");
    EXPECT_EQ(nothing.target(), "");
    EXPECT_FALSE(nothing.isAlias());
}

TEST(DesktopEntryTest, TellsApplicationsFromLinksAndTheRest)
{
    EXPECT_EQ(entry("Type=Application").kind(), Kind::application);
    EXPECT_EQ(entry("Type=Link").kind(), Kind::link);
    EXPECT_EQ(entry("Type=Directory").kind(), Kind::other);
    EXPECT_EQ(entry("Type=application").kind(), Kind::other);
    EXPECT_EQ(entry("type=Link").kind(), Kind::other);
    EXPECT_EQ(entry("Name=No type").kind(), Kind::other);
}

TEST(DesktopEntryTest, TakesNothingForAnEntryThatIsNone)
{
    for (const std::string_view text : { "", "\n", "Type=Link\nURL=/file\n", "[Desktop Entry",
             "[Desktop entry]\nType=Link\nURL=/file\n", "\xEF\xBB\xBF",
             "\x7f"
             "ELF" }) {
        EXPECT_EQ(parsed(text).kind(), Kind::other) << text;
        EXPECT_FALSE(parsed(text).isAlias()) << text;
    }
}

TEST(DesktopEntryTest, ReadsTheFirstGroupAlone)
{
    EXPECT_EQ(
        parsed("[Other]\nType=Link\n[Desktop Entry]\nType=Application\n").kind(), Kind::other);

    const auto first = parsed("[Desktop Entry]\nType=Link\nURL=/one\n"
                              "[Desktop Action New]\nURL=/two\nType=Application\n"
                              "[Desktop Entry]\nURL=/three\n");
    EXPECT_EQ(first.kind(), Kind::link);
    EXPECT_EQ(first.target(), "/one");
}

TEST(DesktopEntryTest, LeavesOutCommentsAndLinesOfAnotherForm)
{
    const auto link = parsed("#!/usr/bin/env xdg-open\n\nType=Application\n[Desktop Entry]\n"
                             "# URL=/comment\n#Type=Application\nnonsense\n=\n=value\n"
                             "Type=Link\nURL=/file");

    EXPECT_EQ(link.kind(), Kind::link);
    EXPECT_EQ(link.target(), "/file");
}

TEST(DesktopEntryTest, DoesWithBlanksAndForeignLineEnds)
{
    const auto link = parsed("[Desktop Entry] \r\n  Type \t=  Link \r\nURL = /a b \r\n"
                             "Name=\t A name \r\n");

    EXPECT_EQ(link.kind(), Kind::link);
    EXPECT_EQ(link.target(), "/a b");
    EXPECT_EQ(link.name(), "A name");
}

TEST(DesktopEntryTest, GoesByTheLaterOfTwoEqualKeys)
{
    const auto link = entry("Type=Application\nType=Link\nURL=/one\nURL=/two\n"
                            "Name=One\nName=Two\n");

    EXPECT_EQ(link.kind(), Kind::link);
    EXPECT_EQ(link.target(), "/two");
    EXPECT_EQ(link.name(), "Two");
}

TEST(DesktopEntryTest, ReadsEscapes)
{
    EXPECT_EQ(targetOf("/\\sa\\\\b\\tc\\nd\\re\\s"), "/ a\\b\tc\nd\re ");
    EXPECT_EQ(targetOf("/a\\xb\\"), "/a\\xb\\");
}

TEST(DesktopEntryTest, LeadsToLocalFilesAlone)
{
    EXPECT_EQ(targetOf("file:///folder/file"), "/folder/file");
    EXPECT_EQ(targetOf("file://localhost/folder/file"), "/folder/file");
    EXPECT_EQ(targetOf("file:/folder/file"), "/folder/file");
    EXPECT_EQ(targetOf("FILE:///folder/a%20%C3%BC"), "/folder/a ü");
    EXPECT_EQ(targetOf("/folder/100%"), "/folder/100%");
    EXPECT_EQ(targetOf("/"), "/");
    for (const auto* url : { "", "https://example.org/", "file://host/file",
             "file://localhostile/f", "relative", "~/file", "file:relative", "file:///a%00b",
             "file:///a%2Fb", "file:///%", "mailto:a@b", "trash:///" })
        EXPECT_EQ(targetOf(url), "") << url;
}

TEST(DesktopEntryTest, LeadsNowhereWhenThereIsANULInThePath)
{
    using namespace std::string_literals;

    EXPECT_EQ(targetOf("/a\0b"s), "");
    EXPECT_EQ(targetOf("file:///a\0b"s), "");
}

TEST(DesktopEntryTest, LeadsSomewhereOnlyAsALink)
{
    EXPECT_TRUE(entry("URL=/file\nType=Link\n").isAlias());
    EXPECT_FALSE(entry("Type=Application\nURL=/file\n").isAlias());
    EXPECT_FALSE(entry("Type=Link\nURL=https://example.org/\n").isAlias());
    EXPECT_FALSE(entry("Type=Link\nURL[de]=/file\nURL[$e]=/file\nPath=/file\n").isAlias());
}

TEST(DesktopEntryTest, IsNamedInTheLanguageThatSuitsBest)
{
    constexpr auto* lines = "Type=Application\nName[de]=Deutsch\nName[de_AT]=Kakanisch\n"
                            "Name=Plain\nName[fr]=Français\nName[de@euro]=Euro\n"
                            "Name[de_AT@euro]=Genau\n";

    EXPECT_EQ(entry(lines, "de_AT.UTF-8@euro").name(), "Genau");
    EXPECT_EQ(entry(lines, "de_AT").name(), "Kakanisch");
    EXPECT_EQ(entry(lines, "de_DE@euro").name(), "Euro");
    EXPECT_EQ(entry(lines, "de_DE.UTF-8").name(), "Deutsch");
    EXPECT_EQ(entry(lines, "fr_CA").name(), "Français");
    EXPECT_EQ(entry(lines, "it_IT").name(), "Plain");
    EXPECT_EQ(entry(lines, "C").name(), "Plain");
}

TEST(DesktopEntryTest, HasNoNameWithoutOneThatSuits)
{
    EXPECT_EQ(entry("Type=Link\nName[de]=Deutsch\n", "fr").name(), "");
    EXPECT_EQ(entry("Type=Link\nName[]=Empty\nName[=Broken\nNames=Other\n", "C").name(), "");
}

TEST(DesktopEntryTest, HasANameOnlyAsAnApplicationOrALink)
{
    EXPECT_EQ(entry("Name=Name\nType=Link\n").name(), "Name");
    EXPECT_EQ(entry("Name=Name\nType=Application\n").name(), "Name");
    EXPECT_EQ(entry("Name=Name\nType=Directory\n").name(), "");
    EXPECT_EQ(entry("Name=Name\n").name(), "");
}

TEST(DesktopEntryTest, RefusesNamesThatCannotBeShown)
{
    EXPECT_EQ(nameFrom(""), "");
    EXPECT_EQ(nameFrom("\\s\\s"), "");
    EXPECT_EQ(nameFrom("two\\nlines"), "");
    EXPECT_EQ(nameFrom("\x1b[31mred"), "");
    EXPECT_EQ(nameFrom("Gr\xFC\xDF"
                       "e"),
        "");
    EXPECT_EQ(nameFrom("a\\sname"), "a name");
}

TEST(DesktopEntryTest, FallsBackOnTheNextBestNameThatCanBeShown)
{
    EXPECT_EQ(
        entry("Type=Link\nName[de_AT]=\x01\nName[de]=\xFF\nName=Plain\n", "de_AT").name(), "Plain");
    EXPECT_EQ(entry("Type=Link\nName=Plain\nName[de]=Deutsch\nName[de_AT]=\\n\n", "de_AT").name(),
        "Deutsch");
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashName.h"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t longest = 255 - zef::TrashName::infoSuffix.size();

std::string candidate(const std::string& name, unsigned number)
{
    return zef::TrashName(name).numbered(number);
}

// By appending: gcc 12 takes the sum of two strings for an overflow.
std::string longName(std::size_t length, const char* ending)
{
    std::string name(length, 'a');
    name.append(ending);
    return name;
}

TEST(TrashNameTest, LeavesTheFirstAsItIs)
{
    EXPECT_EQ(candidate("a.txt", 1), "a.txt");
}

TEST(TrashNameTest, NumbersTheOthersBeforeTheExtension)
{
    EXPECT_EQ(candidate("a.txt", 2), "a.2.txt");
    EXPECT_EQ(candidate("a.tar.gz", 13), "a.tar.13.gz");
}

TEST(TrashNameTest, NumbersNamesWithoutAnExtensionAtTheirEnd)
{
    EXPECT_EQ(candidate("a", 2), "a.2");
    EXPECT_EQ(candidate(".profile", 2), ".profile.2");
}

TEST(TrashNameTest, KeepsADotAtTheEnd)
{
    EXPECT_EQ(candidate("a.", 2), "a.2.");
}

TEST(TrashNameTest, LeavesTheLongestNameThatHasRoomForItsRecord)
{
    const std::string name(longest, 'a');

    EXPECT_EQ(candidate(name, 1), name);
}

TEST(TrashNameTest, CutsALongNameBeforeItsExtension)
{
    const auto name = longName(251, ".txt");

    EXPECT_EQ(candidate(name, 1), longName(longest - 4, ".txt"));
    EXPECT_EQ(candidate(name, 10), longName(longest - 7, ".10.txt"));
}

TEST(TrashNameTest, CutsBetweenCharacters)
{
    std::string name;
    for (int count = 0; count < 85; ++count)
        name += "\u20ac"; // three bytes
    const auto cut = candidate(name, 1);

    EXPECT_EQ(cut, name.substr(0, longest / 3 * 3));
}

TEST(TrashNameTest, CutsBytesThatAreNoCharactersWhereItHasTo)
{
    const std::string name(255, '\x80');

    EXPECT_EQ(candidate(name, 1), name.substr(0, longest));
}

TEST(TrashNameTest, TakesALongEndForNoExtension)
{
    auto name = longName(1, ".");
    name.append(253, 'b');

    EXPECT_EQ(candidate(name, 2), name.substr(0, longest - 2) + ".2");
}

} // namespace

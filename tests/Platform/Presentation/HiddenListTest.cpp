// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/HiddenList.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using zef::HiddenList;

TEST(HiddenListTest, ListsOneNameALine)
{
    const HiddenList list("one\ntwo\nthree\n");

    for (const auto* name : { "one", "two", "three" })
        EXPECT_TRUE(list.contains(name)) << name;
    for (const auto* name : { "", "on", "one\n", "one\ntwo", "ones", "four", "One" })
        EXPECT_FALSE(list.contains(name)) << name;
}

TEST(HiddenListTest, NeedsNoLineEndAtTheEnd)
{
    EXPECT_TRUE(HiddenList("one\nlast").contains("last"));
}

TEST(HiddenListTest, TakesEveryByteAsItStands)
{
    const HiddenList list(" blanks \ncarriage\r\n#comment\n\xFF\xFE\n*.txt\na/b\n");

    for (const auto* name : { " blanks ", "carriage\r", "#comment", "\xFF\xFE", "*.txt" })
        EXPECT_TRUE(list.contains(name)) << name;
    for (const auto* name : { "blanks", "carriage", "comment", "\xFF", "a.txt", "a", "b" })
        EXPECT_FALSE(list.contains(name)) << name;
}

TEST(HiddenListTest, ListsNothingInEmptyLines)
{
    EXPECT_FALSE(HiddenList("").contains(""));
    EXPECT_FALSE(HiddenList("\n\n\n").contains(""));
    EXPECT_TRUE(HiddenList("\n\none\n\n").contains("one"));
}

TEST(HiddenListTest, DoesWithRepeatedAndManyNames)
{
    std::string text;
    for (int index = 0; index < 5000; ++index)
        text += std::to_string(index % 2500) + "\n";
    const HiddenList list(text);

    for (int index = 0; index < 2500; ++index)
        EXPECT_TRUE(list.contains(std::to_string(index)));
    EXPECT_FALSE(list.contains("2500"));
}

TEST(HiddenListTest, StaysRightWhenItIsMoved)
{
    HiddenList list("a\nb\n");
    const auto moved = std::move(list);

    EXPECT_TRUE(moved.contains("a"));
    EXPECT_TRUE(moved.contains("b"));
}

} // namespace

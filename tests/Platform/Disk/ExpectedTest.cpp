// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/Expected.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>

namespace {

using zef::Expected;
using zef::FileError;

TEST(ExpectedTest, HoldsAValue)
{
    const Expected<std::string> name("notes.txt");

    EXPECT_TRUE(name);
    EXPECT_EQ(name.error(), FileError::none);
    EXPECT_EQ(*name, "notes.txt");
    EXPECT_EQ(name->size(), 9u);
}

TEST(ExpectedTest, HoldsAnErrorInstead)
{
    const Expected<std::string> name(FileError::notFound);

    EXPECT_FALSE(name);
    EXPECT_EQ(name.error(), FileError::notFound);
}

TEST(ExpectedTest, TellsFalseFromNoValue)
{
    const Expected<bool> isHidden(false);
    const Expected<bool> unknown(FileError::accessDenied);

    EXPECT_TRUE(isHidden.hasValue());
    EXPECT_FALSE(*isHidden);
    EXPECT_FALSE(unknown.hasValue());
}

TEST(ExpectedTest, HandsOutAValueThatCanOnlyBeMoved)
{
    Expected<std::unique_ptr<int>> number(std::make_unique<int>(7));

    const auto taken = *std::move(number);

    EXPECT_EQ(*taken, 7);
}

TEST(ExpectedTest, TakesErrnoValuesForErrors)
{
    const Expected<std::string, int> name(EEXIST);

    EXPECT_FALSE(name);
    EXPECT_EQ(name.error(), EEXIST);
    EXPECT_EQ((Expected<std::string, int>("notes.txt").error()), 0);
}

TEST(ExpectedTest, LetsTheValueBeChanged)
{
    Expected<std::string> name("notes");

    *name += ".txt";

    EXPECT_EQ(*name, "notes.txt");
}

} // namespace

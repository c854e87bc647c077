// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include <malloc.h>

namespace {

TEST(PathBytesTest, IsEmptyAtFirst)
{
    const zef::PathBytes bytes;

    EXPECT_EQ(bytes.length(), 0u);
    EXPECT_STREQ(bytes.text(), "");
}

TEST(PathBytesTest, AppendsAndEndsInANul)
{
    zef::PathBytes bytes;
    EXPECT_TRUE(bytes.append("/a"));
    EXPECT_TRUE(bytes.append(""));
    EXPECT_TRUE(bytes.append(std::string_view("/bcd").substr(0, 2)));

    EXPECT_STREQ(bytes.text(), "/a/b");
    EXPECT_EQ(bytes.view(), "/a/b");
    EXPECT_EQ(bytes.length(), 4u);
}

TEST(PathBytesTest, HasRoomForTheLongestPathAndItsNul)
{
    const std::string longest(PATH_MAX - 1, 'n');
    zef::PathBytes bytes;

    EXPECT_TRUE(bytes.append(longest));
    EXPECT_EQ(bytes.view(), longest);
    EXPECT_EQ(bytes.text()[PATH_MAX - 1], '\0');
}

TEST(PathBytesTest, StaysAsItIsWithoutRoom)
{
    zef::PathBytes bytes;
    bytes.append("/a");

    EXPECT_FALSE(bytes.append(std::string(PATH_MAX - 2, 'n')));
    EXPECT_STREQ(bytes.text(), "/a");
    EXPECT_TRUE(bytes.append(std::string(PATH_MAX - 3, 'n')));
    EXPECT_FALSE(bytes.append("n"));
    EXPECT_TRUE(bytes.append(""));
}

TEST(PathBytesTest, IsEmptyAgainWhenCleared)
{
    zef::PathBytes bytes;
    bytes.append("/a");
    bytes.clear();

    EXPECT_STREQ(bytes.text(), "");
    EXPECT_EQ(bytes.length(), 0u);
}

TEST(PathBufferTest, HoldsItsBytesAndANul)
{
    const auto buffer = zef::makePathBuffer("/a/b");

    EXPECT_STREQ(buffer.get(), "/a/b");
    EXPECT_GE(malloc_usable_size(buffer.get()), 5u);
}

TEST(PathBufferTest, HandsItsBytesToACallerThatFreesThem)
{
    auto buffer = zef::makePathBuffer("");
    char* bytes = buffer.release();

    EXPECT_STREQ(bytes, "");
    std::free(bytes);
}

} // namespace

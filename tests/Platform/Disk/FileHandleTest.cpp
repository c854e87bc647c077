// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileHandle.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>

namespace {

zef::FileHandle makeHandle()
{
    zef::FileHandle handle{ .type = 1, .length = 3, .isDigest = false, .isDecodable = true };
    handle.bytes[2] = std::byte{ 7 };
    return handle;
}

TEST(FileHandleTest, IsUnknownAtFirst)
{
    EXPECT_FALSE(zef::FileHandle().isKnown());
    EXPECT_TRUE(makeHandle().isKnown());
}

TEST(FileHandleTest, EqualsAHandleWithTheSameTypeAndBytes)
{
    auto other = makeHandle();
    // How it may be used doesn't make another object of it.
    other.isDecodable = false;

    EXPECT_EQ(makeHandle(), other);
}

TEST(FileHandleTest, DiffersInTypeLengthBytesOrMeaning)
{
    auto other = makeHandle();
    other.type = 2;
    EXPECT_FALSE(makeHandle() == other);
    other = makeHandle();
    other.length = 4;
    EXPECT_FALSE(makeHandle() == other);
    other = makeHandle();
    other.bytes[2] = std::byte{ 8 };
    EXPECT_FALSE(makeHandle() == other);
    other = makeHandle();
    other.isDigest = true;
    EXPECT_FALSE(makeHandle() == other);
}

TEST(FileHandleTest, StaysTheFilesWhenItIsRenamed)
{
    TemporaryFolder folder;
    folder.write("before");
    auto& system = zef::FileSystem::system();
    const auto before = system.handle(folder.path("before").c_str());
    folder.rename("before", "after");

    EXPECT_EQ(system.handle(folder.path("after").c_str()), before);
}

TEST(FileHandleTest, TellsFilesApart)
{
    TemporaryFolder folder;
    folder.write("one");
    folder.write("other");
    auto& system = zef::FileSystem::system();
    const auto one = system.handle(folder.path("one").c_str());
    if (!one.isKnown())
        GTEST_SKIP() << "the file system has no handles";

    EXPECT_FALSE(system.handle(folder.path("other").c_str()) == one);
}

TEST(FileHandleTest, HasTheBytesThatItIsMadeOf)
{
    const std::array bytes{ std::byte{ 0 }, std::byte{ 0 }, std::byte{ 7 } };

    const auto handle = zef::FileHandle::of(1, bytes, true);

    EXPECT_EQ(handle, makeHandle());
    EXPECT_TRUE(handle.isDecodable);
}

TEST(FileHandleTest, IsADigestOfMoreBytesThanItHasRoomFor)
{
    std::array<std::byte, 100> bytes{};
    const auto handle = zef::FileHandle::of(1, bytes, true);
    bytes[99] = std::byte{ 7 };

    EXPECT_TRUE(handle.isDigest);
    EXPECT_FALSE(handle.isDecodable);
    EXPECT_EQ(handle.length, 8);
    EXPECT_FALSE(handle == zef::FileHandle::of(1, bytes, true));
}

} // namespace

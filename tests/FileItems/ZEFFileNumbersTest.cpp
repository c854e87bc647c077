// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileNumbers.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace {

constexpr std::uint64_t narrowInodes[] = { 0, 1, 2, 0xffff, 0x10000, 0x12345678, 0x7fffffff,
    0x80000000, 0xfffffffe, 0xffffffff };
constexpr std::uint64_t wideInodes[] = { 0x100000000, 0x100000001, 0x680000081, 0x123456789abcdef0,
    9223372036855562498u, 0xffffffffffffffff };

// What the key's two steps undo.
std::uint64_t inodeOfKey(std::uint64_t key)
{
    const auto low = (key >> 16) & 0xffff;
    const auto middle = (key >> 32) & 0xffff;
    const auto upper = (key >> 48) & 0xffff;
    const auto top = (key & 0xffff) ^ middle;
    return low | middle << 16 | upper << 32 | top << 48;
}

TEST(ZEFFileNumbersTest, ShiftsAndRepeatsNumbersOf32Bits)
{
    for (const auto inode : narrowInodes)
        EXPECT_EQ(zef::registryKeyOfInode(inode), (inode << 16) | (inode >> 16)) << inode;
    EXPECT_EQ(zef::registryKeyOfInode(0x12345678), 0x123456781234u);
}

TEST(ZEFFileNumbersTest, GivesEveryNumberAKeyOfItsOwn)
{
    std::mt19937_64 random(1);
    for (const auto inode : wideInodes)
        EXPECT_EQ(inodeOfKey(zef::registryKeyOfInode(inode)), inode);
    for (int index = 0; index < 100000; ++index) {
        const auto inode = random() >> (random() % 64);
        ASSERT_EQ(inodeOfKey(zef::registryKeyOfInode(inode)), inode);
    }
}

TEST(ZEFFileNumbersTest, TellsNeighboursOnALargeVolumeApart)
{
    std::set<std::uint64_t> keys;
    for (std::uint64_t inode = 0x680000000; inode < 0x680000000 + 100000; ++inode)
        keys.insert(zef::registryKeyOfInode(inode));

    EXPECT_EQ(keys.size(), 100000u);
}

TEST(ZEFFileNumbersTest, HasAKeyOfZeroForNumberZeroOnly)
{
    EXPECT_EQ(zef::registryKeyOfInode(0), 0u);
    for (int shift = 0; shift < 64; ++shift)
        EXPECT_NE(zef::registryKeyOfInode(std::uint64_t{ 1 } << shift), 0u);
}

TEST(ZEFFileNumbersTest, HashesNumbersOf32BitsByRotation)
{
    constexpr std::uint32_t device = 0xfd000001;
    for (const auto inode : narrowInodes) {
        const auto narrow = static_cast<std::uint32_t>(inode);
        EXPECT_EQ(zef::hashOfFile(inode, device), ((narrow << 16) | (narrow >> 16)) ^ device);
    }
    EXPECT_EQ(zef::hashOfFile(0x12345678, 0), 0x56781234u);
}

TEST(ZEFFileNumbersTest, LetsTheUpperHalfCountInTheHash)
{
    EXPECT_NE(zef::hashOfFile(0x100000002, 5), zef::hashOfFile(2, 5));
    EXPECT_EQ(zef::hashOfFile(0x100000002, 5), 0x00030000u ^ 5u);
}

} // namespace

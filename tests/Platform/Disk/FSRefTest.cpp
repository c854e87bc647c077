// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"

#include "tests/support/FakeFileSystem.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

zef::Stat makeStat(std::uint32_t mode = 0100644)
{
    zef::Stat stat;
    stat.device = 0xfff12345;
    stat.inode = 0x8000000000000001;
    stat.mode = mode;
    stat.hasBirthTime = true;
    stat.birthTime = -5;
    return stat;
}

TEST(FSRefTest, IsEmptyAtFirst)
{
    EXPECT_TRUE(zef::FSRef().isEmpty());
    EXPECT_FALSE(zef::FSRef(makeStat()).isEmpty());
}

TEST(FSRefTest, HasAllBytesZeroWhileItIsEmpty)
{
    const zef::FSRef ref;
    const std::array<std::byte, sizeof ref> zeros{};

    EXPECT_EQ(std::memcmp(&ref, zeros.data(), sizeof ref), 0);
}

TEST(FSRefTest, KeepsWhatItWasMadeFrom)
{
    const zef::FSRef ref(makeStat(), 77);

    EXPECT_EQ(ref.device(), 0xfff12345u);
    EXPECT_EQ(ref.inode(), 0x8000000000000001u);
    EXPECT_EQ(ref.birthTime(), -5);
    EXPECT_TRUE(ref.hasBirthTime());
    EXPECT_EQ(ref.parentInode(), 77u);
    EXPECT_FALSE(ref.isFolder());
    EXPECT_FALSE(ref.hasHandle());
}

TEST(FSRefTest, KnowsFolders)
{
    EXPECT_TRUE(zef::FSRef(makeStat(0040755)).isFolder());
    EXPECT_FALSE(zef::FSRef(makeStat(0120777)).isFolder());
    EXPECT_FALSE(zef::FSRef(makeStat(0140777)).isFolder());
}

TEST(FSRefTest, DoesWithoutABirthTime)
{
    auto stat = makeStat();
    stat.hasBirthTime = false;

    EXPECT_FALSE(zef::FSRef(stat).hasBirthTime());
}

TEST(FSRefTest, KeepsAHandleWithItsMarks)
{
    zef::FileHandle handle{ .type = 200, .length = 40, .isDigest = false, .isDecodable = true };
    handle.bytes.fill(std::byte{ 0xee });
    zef::FSRef ref(makeStat(0040755));
    ref.setHandle(handle);

    EXPECT_TRUE(ref.hasHandle());
    EXPECT_EQ(ref.handle(), handle);
    EXPECT_TRUE(ref.handle().isDecodable);
    EXPECT_TRUE(ref.isFolder());
    EXPECT_TRUE(ref.hasBirthTime());
}

TEST(FSRefTest, ReplacesAHandleWithItsMarks)
{
    zef::FSRef ref(makeStat());
    ref.setHandle({ .type = 1, .length = 8, .isDigest = true, .isDecodable = true });
    ref.setHandle({ .type = 1, .length = 8 });

    EXPECT_FALSE(ref.handle().isDigest);
    EXPECT_FALSE(ref.handle().isDecodable);
}

TEST(FSRefTest, ComparesNumbersOnly)
{
    auto other = makeStat();
    other.birthTime = 9;
    const zef::FSRef ref(makeStat());

    EXPECT_TRUE(ref.hasNumbersOf(other));
    EXPECT_TRUE(ref.hasNumbersOf(zef::FSRef(other)));
    other.inode = 1;
    EXPECT_FALSE(ref.hasNumbersOf(other));
    other = makeStat();
    other.device = 1;
    EXPECT_FALSE(ref.hasNumbersOf(zef::FSRef(other)));
}

class SameObjectTest : public testing::Test {
protected:
    SameObjectTest() { stat = files.addFile("/file"); }

    bool isSame(const zef::FSRef& recorded) { return zef::sameObject(stat, recorded, "/file"); }

    FakeFileSystem files;
    zef::Stat stat;
};

TEST_F(SameObjectTest, HoldsForEqualNumbersAndBirthTimesWithoutAskingTheDisk)
{
    EXPECT_TRUE(isSame(zef::FSRef(stat)));
    EXPECT_EQ(files.handleCount(), 0u);
}

TEST_F(SameObjectTest, HoldsWhenABirthTimeIsNotKnown)
{
    auto before = stat;
    before.hasBirthTime = false;

    EXPECT_TRUE(isSame(zef::FSRef(before)));
}

TEST_F(SameObjectTest, FailsForOtherNumbers)
{
    auto other = stat;
    ++other.inode;

    EXPECT_FALSE(isSame(zef::FSRef(other)));
}

TEST_F(SameObjectTest, FailsForAnotherBirthTime)
{
    auto before = stat;
    --before.birthTime;

    EXPECT_FALSE(isSame(zef::FSRef(before)));
}

TEST_F(SameObjectTest, HoldsForAnotherBirthTimeWhenTheHandlesAgree)
{
    auto before = stat;
    --before.birthTime;
    zef::FSRef recorded(before);
    recorded.setHandle(files.handle("/file"));

    EXPECT_TRUE(isSame(recorded));
}

TEST_F(SameObjectTest, FailsForAnotherBirthTimeAndAnotherHandle)
{
    auto before = stat;
    --before.birthTime;
    zef::FSRef recorded(before);
    recorded.setHandle({ .type = 1, .length = 8 });

    EXPECT_FALSE(isSame(recorded));
}

} // namespace

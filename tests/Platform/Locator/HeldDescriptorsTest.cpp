// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/HeldDescriptors.h"

#include <gtest/gtest.h>

#include <set>

#include <fcntl.h>

namespace {

constexpr std::uint32_t folderMode = 0040755;
constexpr std::uint32_t fileMode = 0100644;

class HeldDescriptorsTest : public testing::Test {
protected:
    static zef::FSRef ref(std::uint64_t inode, std::uint32_t mode)
    {
        zef::Stat stat;
        stat.device = 1;
        stat.inode = inode;
        stat.mode = mode;
        return zef::FSRef(stat);
    }

    static zef::FSRef file(std::uint64_t inode) { return ref(inode, fileMode); }
    static zef::FSRef folder(std::uint64_t inode) { return ref(inode, folderMode); }

    // What the object is doesn't matter to the table.
    static zef::HeldObject object(const zef::FSRef& ref)
    {
        return { ref, zef::ObjectDescriptor::open("/"), 0 };
    }

    zef::Ref<zef::ObjectDescriptor> insert(const zef::FSRef& ref)
    {
        return table.insert(object(ref));
    }

    zef::HeldDescriptors table;
};

TEST_F(HeldDescriptorsTest, HasRoomForNothingAtFirst)
{
    EXPECT_FALSE(table.hasRoom(true));
    EXPECT_FALSE(table.hasRoom(false));
    EXPECT_TRUE(insert(file(1)));
    EXPECT_EQ(table.count(), 0u);
}

TEST_F(HeldDescriptorsTest, FindsWhatItHolds)
{
    table.setBudget(8);
    insert(file(1));
    insert(folder(2));

    EXPECT_EQ(table.count(), 2u);
    EXPECT_TRUE(table.find(file(1)));
    EXPECT_TRUE(table.find(folder(2)));
    EXPECT_FALSE(table.find(file(3)));
}

TEST_F(HeldDescriptorsTest, TakesOtherObjectsUntilHalfOfTheBudgetIsUsed)
{
    table.setBudget(4);
    insert(file(1));
    insert(file(2));

    EXPECT_FALSE(table.hasRoom(false));
    EXPECT_TRUE(insert(file(3)));
    EXPECT_TRUE(table.find(file(1)));
    EXPECT_FALSE(table.find(file(3)));
}

TEST_F(HeldDescriptorsTest, MakesRoomForAFolderByTheOneLeastRecentlyUsed)
{
    table.setBudget(4);
    insert(folder(1));
    insert(folder(2));
    table.find(folder(1));

    EXPECT_TRUE(insert(folder(3)));
    EXPECT_TRUE(table.find(folder(1)));
    EXPECT_FALSE(table.find(folder(2)));
    EXPECT_TRUE(table.find(folder(3)));
}

TEST_F(HeldDescriptorsTest, KeepsTheFilesThatFoldersHaveNoRoomBeside)
{
    table.setBudget(2);
    insert(file(1));
    insert(folder(2));
    insert(folder(3));

    EXPECT_TRUE(table.find(file(1)));
    EXPECT_EQ(table.count(), 2u);
}

TEST_F(HeldDescriptorsTest, HoldsAFolderWithABudgetOfOne)
{
    table.setBudget(1);

    EXPECT_TRUE(table.hasRoom(true));
    EXPECT_FALSE(table.hasRoom(false));
}

TEST_F(HeldDescriptorsTest, HandsOutWhatASmallerBudgetHasNoRoomFor)
{
    table.setBudget(8);
    for (std::uint64_t inode = 1; inode <= 4; ++inode) {
        insert(file(inode));
        insert(folder(10 + inode));
    }
    const auto removed = table.setBudget(3);

    EXPECT_EQ(removed.size(), 5u);
    EXPECT_EQ(table.count(), 3u);
    EXPECT_EQ(table.budget(), 3u);
    EXPECT_TRUE(table.find(folder(14)));
}

TEST_F(HeldDescriptorsTest, AddsTheUsesOfAnObjectThatItHoldsAlready)
{
    table.setBudget(8);
    insert(file(1));
    auto again = object(file(1));
    const auto* descriptor = again.descriptor.get();

    EXPECT_EQ(table.insert(std::move(again)), descriptor);
    EXPECT_EQ(table.find(file(1))->uses, 2u);
    EXPECT_EQ(table.count(), 1u);
}

TEST_F(HeldDescriptorsTest, TellsAnObjectFromTheNextOneWithItsNumber)
{
    table.setBudget(8);
    zef::Stat stat;
    stat.inode = 1;
    stat.hasBirthTime = true;
    stat.birthTime = 100;
    const zef::FSRef before(stat);
    stat.birthTime = 200;
    const zef::FSRef after(stat);
    insert(before);

    EXPECT_FALSE(table.find(after));
    insert(after);
    EXPECT_EQ(table.count(), 2u);
    EXPECT_TRUE(table.remove(before));
    EXPECT_TRUE(table.find(after));
}

TEST_F(HeldDescriptorsTest, TakesObjectsWithEqualHandlesForOne)
{
    table.setBudget(8);
    zef::FileHandle handle{ .type = 1, .length = 8 };
    zef::Stat stat;
    stat.hasBirthTime = true;
    stat.birthTime = 100;
    zef::FSRef before(stat);
    before.setHandle(handle);
    stat.birthTime = 200;
    zef::FSRef changed(stat);
    changed.setHandle(handle);
    insert(before);

    EXPECT_TRUE(table.find(changed));
}

TEST_F(HeldDescriptorsTest, RemovesOnlyTheObjectThatIsHeldByTheSameDescriptor)
{
    table.setBudget(8);
    insert(file(1));
    const auto held = *table.find(file(1));

    EXPECT_FALSE(table.remove(object(file(1))));
    EXPECT_TRUE(table.remove(held));
    EXPECT_FALSE(table.remove(file(1)));
    EXPECT_EQ(table.count(), 0u);
}

TEST_F(HeldDescriptorsTest, CanDoWithoutTheFoldersFirst)
{
    table.setBudget(8);
    insert(folder(1));
    insert(folder(2));
    insert(file(3));
    table.removeLeastWanted();

    EXPECT_FALSE(table.find(folder(1)));
    EXPECT_TRUE(table.removeLeastWanted());
    EXPECT_TRUE(table.find(file(3)));
    EXPECT_TRUE(table.removeLeastWanted());
    EXPECT_FALSE(table.removeLeastWanted());
}

TEST_F(HeldDescriptorsTest, GivesEveryObjectItsTurn)
{
    table.setBudget(100);
    for (std::uint64_t inode = 1; inode <= 20; ++inode) {
        insert(file(inode));
        insert(folder(100 + inode));
    }
    std::set<std::uint64_t> seen;
    for (int round = 0; round < 5; ++round) {
        std::array<zef::HeldObject, 8> copies;
        ASSERT_EQ(table.copyInTurn(copies), 8u);
        for (const auto& copy : copies)
            seen.insert(copy.ref.inode());
    }

    EXPECT_EQ(seen.size(), 40u);
}

TEST_F(HeldDescriptorsTest, GoesOnWithTheTurnsWhenTheNextObjectIsUsed)
{
    table.setBudget(8);
    for (std::uint64_t inode = 1; inode <= 3; ++inode)
        insert(folder(inode));
    std::array<zef::HeldObject, 1> copies;
    table.copyInTurn(copies);
    ASSERT_EQ(copies[0].ref.inode(), 3u);
    table.find(folder(2));
    table.copyInTurn(copies);

    EXPECT_EQ(copies[0].ref.inode(), 1u);
}

TEST_F(HeldDescriptorsTest, GivesTheFewObjectsThatThereAreOnceEach)
{
    table.setBudget(8);
    insert(file(1));
    insert(folder(2));
    std::array<zef::HeldObject, 8> copies;

    EXPECT_EQ(table.copyInTurn(copies), 2u);
    EXPECT_NE(copies[0].ref.inode(), copies[1].ref.inode());
}

TEST_F(HeldDescriptorsTest, KeepsTheTurnsGoingWhileObjectsComeAndGo)
{
    table.setBudget(8);
    std::array<zef::HeldObject, 2> copies;
    for (std::uint64_t inode = 1; inode <= 50; ++inode) {
        insert(folder(inode));
        table.find(folder(inode / 2));
        table.copyInTurn(copies);
        table.remove(folder(inode - 2));
    }

    EXPECT_EQ(table.copyAll().size(), table.count());
}

} // namespace

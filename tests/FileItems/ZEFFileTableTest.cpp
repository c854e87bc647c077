// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"

#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

namespace {

// Tables that no registry knows. They outlive their items, as those of the registry do.
class ZEFFileTableTest : public FakeFileItemFixture {
protected:
    static zef::Ref<ZEFFileItem> itemWithInode(std::uint64_t inode)
    {
        zef::Stat stat;
        stat.inode = inode;
        stat.mode = 0100644;
        const auto where = url("/" + std::to_string(inode));
        return unregistered(where, nullptr, where, &stat);
    }

    zef::Ref<ZEFFileItem> inserted(std::uint64_t inode)
    {
        auto made = itemWithInode(inode);
        table.insert(made->fileiNodeHash(), made.get());
        return made;
    }

    ZEFFileTable table{ 4 };
};

TEST_F(ZEFFileTableTest, IsEmptyAtFirst)
{
    EXPECT_EQ(table.count(), 0u);
    EXPECT_FALSE(table.retainedItem(0));
    EXPECT_FALSE(table.retainedItem(1));
    EXPECT_EQ(table.description(), "");
}

TEST_F(ZEFFileTableTest, YieldsWhatWasInsertedRetained)
{
    const auto one = inserted(7);
    EXPECT_EQ(one->retainCount(), 1u);
    EXPECT_EQ(one->ZEF_container(), &table);

    const auto found = table.retainedItem(one->fileiNodeHash());

    EXPECT_EQ(found, one);
    EXPECT_EQ(one->retainCount(), 2u);
    EXPECT_EQ(table.count(), 1u);
    EXPECT_FALSE(table.retainedItem(one->fileiNodeHash() + 1));
}

TEST_F(ZEFFileTableTest, TakesAnItemWithNumberZero)
{
    const auto one = inserted(0);

    EXPECT_EQ(table.retainedItem(0), one);
}

TEST_F(ZEFFileTableTest, PutsAnItemInThePlaceOfAnotherWithItsKey)
{
    const auto former = inserted(7);
    const auto one = inserted(7);

    EXPECT_EQ(table.retainedItem(one->fileiNodeHash()), one);
    EXPECT_EQ(table.count(), 1u);
    EXPECT_EQ(former->ZEF_container(), &table);
}

TEST_F(ZEFFileTableTest, RemovesWhateverIsUnderAKey)
{
    const auto one = inserted(7);
    table.remove(8);
    EXPECT_EQ(table.count(), 1u);

    table.remove(one->fileiNodeHash());

    EXPECT_EQ(table.count(), 0u);
    EXPECT_FALSE(table.retainedItem(one->fileiNodeHash()));
    EXPECT_EQ(one->ZEF_container(), &table);
}

TEST_F(ZEFFileTableTest, DetachesAnItemFromItsEntry)
{
    const auto one = inserted(7);

    table.detach(one.get());

    EXPECT_EQ(table.count(), 0u);
    EXPECT_EQ(one->ZEF_container(), nullptr);
}

TEST_F(ZEFFileTableTest, LeavesAnotherItemsEntryWhenItDetaches)
{
    const auto former = inserted(7);
    const auto one = inserted(7);

    table.detach(former.get());

    EXPECT_EQ(table.retainedItem(one->fileiNodeHash()), one);
    EXPECT_EQ(former->ZEF_container(), nullptr);
}

TEST_F(ZEFFileTableTest, LosesAnItemThatDies)
{
    auto one = inserted(7);

    one = nullptr;

    EXPECT_EQ(table.count(), 0u);
}

TEST_F(ZEFFileTableTest, LosesTheEntryUnderTheKeyOfAnItemThatDiesWhosesoeverItIs)
{
    auto former = inserted(7);
    const auto one = inserted(7);

    former = nullptr;

    EXPECT_FALSE(table.retainedItem(one->fileiNodeHash()));
}

TEST_F(ZEFFileTableTest, KeepsTheEntryWhenADetachedItemDies)
{
    auto former = inserted(7);
    table.detach(former.get());
    const auto one = inserted(7);

    former = nullptr;

    EXPECT_EQ(table.retainedItem(one->fileiNodeHash()), one);
}

TEST_F(ZEFFileTableTest, GrowsBeyondItsCapacity)
{
    std::vector<zef::Ref<ZEFFileItem>> items;
    for (std::uint64_t inode = 0; inode < 1000; ++inode)
        items.push_back(inserted(inode));

    EXPECT_EQ(table.count(), 1000u);
    for (const auto& one : items)
        EXPECT_EQ(table.retainedItem(one->fileiNodeHash()), one);
}

TEST_F(ZEFFileTableTest, DescribesEachItemOnALine)
{
    const auto one = inserted(1);
    const auto two = inserted(2);

    const auto text = table.description();

    EXPECT_NE(text.find(one->description() + "\n"), std::string::npos);
    EXPECT_NE(text.find(two->description() + "\n"), std::string::npos);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
    EXPECT_EQ(ZEFFileMapDescriptionCallback(&table, nullptr), "(null)");
}

// Items come and go for long, so that slots are used again and the table is made anew often.
TEST_F(ZEFFileTableTest, DoesWhatAPlainMapDoes)
{
    std::mt19937 random(3);
    std::map<std::uint64_t, zef::Ref<ZEFFileItem>> model;
    for (int step = 0; step < 30000; ++step) {
        const std::uint64_t inode = (random() % 400) << (random() % 3 * 16);
        const auto known = model.find(inode);
        const auto key = itemWithInode(inode)->fileiNodeHash();
        switch (random() % 4) {
        case 0:
        case 1:
            if (known == model.end())
                model[inode] = inserted(inode);
            break;
        case 2:
            if (known != model.end())
                model.erase(known); // which lets the item die
            break;
        default:
            ASSERT_EQ(table.retainedItem(key).get(),
                known == model.end() ? nullptr : known->second.get());
        }
        ASSERT_EQ(table.count(), model.size());
    }
    for (const auto& [inode, one] : model)
        EXPECT_EQ(table.retainedItem(one->fileiNodeHash()), one);
}

} // namespace

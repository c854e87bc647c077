// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileItemSet.h"

#include "tests/support/FakeFileItemFixture.h"

namespace {

class ZEFFileItemSetTest : public FakeFileItemFixture {
protected:
    zef::Ref<ZEFFileItemSet> set = zef::makeRef<ZEFFileItemSet>(0U);
};

TEST_F(ZEFFileItemSetTest, BeginsEmptyWhateverItsCapacity)
{
    files.addFile("/a");

    EXPECT_EQ(zef::makeRef<ZEFFileItemSet>(300U)->count(), 0u);
    EXPECT_FALSE(set->contains(item("/a")));
}

TEST_F(ZEFFileItemSetTest, TakesEachItemOnce)
{
    files.addFile("/a");
    files.addFile("/b");

    EXPECT_TRUE(set->insert(item("/a")));
    EXPECT_TRUE(set->insert(item("/b")));
    EXPECT_FALSE(set->insert(item("/a")));

    EXPECT_EQ(set->count(), 2u);
    EXPECT_TRUE(set->contains(item("/a")));
    EXPECT_TRUE(set->contains(item("/b")));
}

TEST_F(ZEFFileItemSetTest, TellsItemsApartByTheirFilesAndNotByTheirPlaces)
{
    files.addFile("/a");
    const auto before = item("/a");
    set->insert(before);
    move("/a", "/b");
    files.addFile("/a");

    EXPECT_TRUE(set->contains(item("/b")));
    EXPECT_FALSE(set->contains(item("/a")));
}

TEST_F(ZEFFileItemSetTest, TakesEqualInstancesForOne)
{
    files.addFile("/a");
    const auto seen = stat("/a");
    const auto one = unregistered(url("/a"), nullptr, nullptr, &seen);
    const auto twin = unregistered(url("/a"), nullptr, nullptr, &seen);
    ASSERT_TRUE(one->isEqual(twin.get()));
    set->insert(one);

    EXPECT_TRUE(set->contains(twin));
    EXPECT_FALSE(set->insert(twin));
}

TEST_F(ZEFFileItemSetTest, KeepsItsItemsAlive)
{
    files.addFile("/a");
    const auto file = item("/a");
    set->insert(file);
    EXPECT_EQ(file->retainCount(), 2u);

    set = nullptr;
    EXPECT_EQ(file->retainCount(), 1u);
}

} // namespace

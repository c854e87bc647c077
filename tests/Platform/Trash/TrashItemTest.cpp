// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashItem.h"

#include "ZEFFilesystemTools/Platform/Trash/OpenTrashes.h"

#include "tests/support/TrashFixture.h"

#include <cerrno>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// One file and its way to the trash, step by step.
class TrashItemTest : public TrashFixture {
protected:
    void SetUp() override
    {
        zef::Stat stat;
        folder.write("files/a", "a");
        ASSERT_EQ(from.open(), 0);
        ASSERT_FALSE(from.examine());
        const auto trash = trashes.find(from);
        ASSERT_TRUE(trash);
        ASSERT_EQ(zef::FileSystem::system().statLink(folder.path("files/a").c_str(), stat), 0);
        item = std::make_unique<zef::TrashItem>(0, from, "a", stat, **trash);
    }

    const zef::Date date{ 0 };
    zef::OpenTrashes trashes;
    zef::SourceFolder from{ folder.path("files") };
    std::unique_ptr<zef::TrashItem> item;
};

TEST_F(TrashItemTest, HasARecordBeforeItIsMoved)
{
    EXPECT_EQ(item->writeInfo(date), 0);

    EXPECT_THAT(infos(), ElementsAre("a.trashinfo"));
    EXPECT_TRUE(folder.exists("files/a"));
    EXPECT_THAT(trashed(), IsEmpty());
}

TEST_F(TrashItemTest, TakesItsRecordBack)
{
    ASSERT_EQ(item->writeInfo(date), 0);

    EXPECT_EQ(item->undo(), 0);

    EXPECT_THAT(infos(), IsEmpty());
    EXPECT_TRUE(folder.exists("files/a"));
}

TEST_F(TrashItemTest, ComesBackToItsPlace)
{
    ASSERT_EQ(item->writeInfo(date), 0);
    ASSERT_EQ(item->move(date), 0);
    ASSERT_FALSE(folder.exists("files/a"));

    EXPECT_EQ(item->undo(), 0);

    EXPECT_FALSE(item->isMoved());
    EXPECT_EQ(folder.contents("files/a"), "a");
    EXPECT_THAT(trashed(), IsEmpty());
    EXPECT_THAT(infos(), IsEmpty());
}

TEST_F(TrashItemTest, StaysInTheTrashWithItsRecordWhenItsPlaceWasTaken)
{
    ASSERT_EQ(item->writeInfo(date), 0);
    ASSERT_EQ(item->move(date), 0);
    folder.write("files/a", "another");

    EXPECT_EQ(item->undo(), EEXIST);

    EXPECT_TRUE(item->isMoved());
    EXPECT_EQ(folder.contents("files/a"), "another");
    EXPECT_EQ(folder.contents("data/Trash/files/a"), "a");
    EXPECT_THAT(infos(), ElementsAre("a.trashinfo"));
}

TEST_F(TrashItemTest, DoesNothingToTakeBackWhatWasNotDone)
{
    EXPECT_EQ(item->undo(), 0);
}

} // namespace

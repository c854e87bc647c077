// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/SearchedVolume.h"

#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>

namespace {

class SearchedVolumeTest : public testing::Test {
protected:
    SearchedVolumeTest()
    {
        zef::Clock::replaceShared(&clock);
        EXPECT_EQ(zef::statAt(AT_FDCWD, folder.path().c_str(), top, mountID), 0);
    }
    ~SearchedVolumeTest() override { zef::Clock::replaceShared(nullptr); }

    // As a search that begins now sees the folder.
    zef::Ref<const zef::FolderIndex> indexNow(const std::string& path)
    {
        zef::SearchBudget budget{ .entries = 1000 };
        const zef::SearchedVolume volume(
            indexes, match, budget, folder.path(), top.device, mountID);
        const auto stat = volume.statFolder(path);
        return stat ? volume.index(path, *stat, budget.entries) : nullptr;
    }

    TemporaryFolder folder;
    SteppedClock clock;
    zef::Stat top;
    std::uint64_t mountID = 0;
    zef::FolderIndexCache indexes{ { .seconds = 2 } };
    zef::AliasRecord record;
    zef::AliasMatch match{ record };
};

TEST_F(SearchedVolumeTest, IndexesTheFoldersOnIt)
{
    folder.makeFolder("folder");
    folder.write("folder/file");

    const auto index = indexNow(folder.path("folder"));

    ASSERT_TRUE(index);
    EXPECT_EQ(index->count(), 1u);
}

TEST_F(SearchedVolumeTest, HasNoFolderThatIsAFileOrALinkOrElsewhere)
{
    folder.write("file");
    folder.makeFolder("folder");
    folder.symlink("folder", "link");

    for (const auto& path : { folder.path("file"), folder.path("link"), std::string("/proc") })
        EXPECT_FALSE(indexNow(path)) << path;
}

TEST_F(SearchedVolumeTest, SharesWhatASearchBeforeSaw)
{
    folder.makeFolder("folder");
    for (auto index = indexNow(folder.path("folder"));
         index->mayHaveMissedAChangeBefore(clock.monotonicSeconds());
         index = indexNow(folder.path("folder")))
        clock.advance(3);
    const auto first = indexNow(folder.path("folder"));
    clock.advance(1);

    EXPECT_EQ(indexNow(folder.path("folder")), first);
}

TEST_F(SearchedVolumeTest, ReadsAFolderAgainWhoseLastChangesMayNotShow)
{
    folder.makeFolder("folder");
    folder.write("folder/file");
    const auto first = indexNow(folder.path("folder"));
    clock.advance(1);
    if (!first->mayHaveMissedAChangeBefore(clock.monotonicSeconds()))
        GTEST_SKIP() << "the machine was too slow";

    EXPECT_NE(indexNow(folder.path("folder")), first);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasFolders.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

class AliasFoldersTest : public testing::Test {
protected:
    AliasFoldersTest() { zef::Clock::replaceShared(&clock); }
    ~AliasFoldersTest() override { zef::Clock::replaceShared(nullptr); }

    zef::Ref<const zef::FolderIndex> index(std::string_view name = {}, std::size_t limit = 1000)
    {
        const auto path = name.empty() ? folder.path() : folder.path(name);
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::system().statLink(path.c_str(), stat), 0);
        return folders.index(path.c_str(), stat, limit, clock.monotonicSeconds());
    }

    // Makes a change of the folder so long ago that nothing can have been missed since.
    void letTheFolderRest(std::string_view name)
    {
        for (bool isRecent = true; isRecent;) {
            zef::AliasFolders fresh;
            zef::Stat stat;
            const auto path = folder.path(name);
            zef::FileSystem::system().statLink(path.c_str(), stat);
            isRecent = fresh.index(path.c_str(), stat, 1, 0)->mayHaveMissedAChange();
        }
    }

    TemporaryFolder folder;
    SteppedClock clock;
    zef::AliasFolders folders;
};

TEST_F(AliasFoldersTest, KnowsTheNamesAndTheFoldersInAFolder)
{
    folder.write("file");
    folder.makeFolder("folder");
    const auto names = index();

    ASSERT_TRUE(names);
    EXPECT_EQ(names->count(), 2u);
    EXPECT_EQ(names->folderName(0), "folder");
    EXPECT_EQ(names->folderName(1), "");
}

TEST_F(AliasFoldersTest, KeepsWhatWasSeenWhileTheFolderShowsNoChange)
{
    folder.makeFolder("folder");
    folder.write("folder/file");
    letTheFolderRest("folder");
    const auto first = index("folder");
    clock.advance(1);

    EXPECT_EQ(index("folder"), first);
}

TEST_F(AliasFoldersTest, ReadsAChangedFolderAgain)
{
    folder.makeFolder("folder");
    letTheFolderRest("folder");
    const auto first = index("folder");
    folder.write("folder/file");

    EXPECT_EQ(first->count(), 0u);
    EXPECT_EQ(index("folder")->count(), 1u);
}

TEST_F(AliasFoldersTest, ReadsAFolderAgainWhoseLastChangesMayNotShow)
{
    folder.makeFolder("folder");
    folder.write("folder/file");
    const auto first = index("folder");
    if (!first->mayHaveMissedAChange())
        GTEST_SKIP() << "the machine was too slow";

    EXPECT_EQ(index("folder"), first);
    clock.advance(0.001);
    EXPECT_NE(index("folder"), first);
}

TEST_F(AliasFoldersTest, ForgetsAfterTwoSeconds)
{
    folder.makeFolder("folder");
    letTheFolderRest("folder");
    const auto first = index("folder");
    clock.advance(2.5);

    EXPECT_NE(index("folder"), first);
    EXPECT_EQ(first->retainCount(), 1u);
}

TEST_F(AliasFoldersTest, ReadsNoMoreThanTheLimitAndMoreForAGreaterOne)
{
    folder.makeFolder("folder");
    for (int number = 0; number < 20; ++number)
        folder.write("folder/" + std::to_string(number));

    EXPECT_EQ(index("folder", 10)->count(), 10u);
    EXPECT_EQ(index("folder", 15)->count(), 15u);
    EXPECT_EQ(index("folder", 5)->count(), 15u);
    EXPECT_EQ(index("folder", std::numeric_limits<std::size_t>::max())->count(), 20u);
}

TEST_F(AliasFoldersTest, RefusesALinkToAFolder)
{
    folder.makeFolder("folder");
    folder.symlink("folder", "link");

    EXPECT_EQ(index("link"), nullptr);
}

} // namespace

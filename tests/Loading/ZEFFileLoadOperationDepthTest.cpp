// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/DeepFolders.h"
#include "tests/support/FewDescriptors.h"
#include "tests/support/RecursiveLoadOperationFixture.h"

#include <climits>

namespace {

/// Walks of trees that are very deep or very wide.
class ZEFFileLoadOperationDepthTest : public RecursiveLoadOperationFixture {
protected:
    /// How many of the entries of a chain of folders a path can name.
    std::size_t entriesThatHavePaths(int depth) const
    {
        const auto start = folder.path("loaded").size();
        std::size_t count = 0;
        // In folders of this level; a path's length counts its NUL.
        for (int level = 0; level < depth; ++level)
            count += start + 2 * static_cast<std::size_t>(level + 1) + 1 <= PATH_MAX ? 3 : 0;
        return count;
    }
};

TEST_F(ZEFFileLoadOperationDepthTest, FindsEverythingInATreeOfTwoThousandLevels)
{
    const DeepFolders deep(folder.path("loaded"), 2000);
    load->start();

    ASSERT_EQ(entriesThatHavePaths(2000), 3u * 2000);
    EXPECT_EQ(load->loadingArray()->count(), 3u * 2000 + 1);
}

TEST_F(ZEFFileLoadOperationDepthTest, FindsAllThatPathsCanNameInADeeperTree)
{
    const DeepFolders deep(folder.path("loaded"), 3000);
    load->start();
    const auto lines = takeLog();

    EXPECT_GE(load->loadingArray()->count(), entriesThatHavePaths(3000) + 1);
    EXPECT_LE(lines.size(), 1u) << lines.back();
}

TEST_F(ZEFFileLoadOperationDepthTest, WalksADeepTreeOnAThreadOfAQueue)
{
    const DeepFolders deep(folder.path("loaded"), 500);
    const auto queue = zef::makeRef<zef::OperationQueue>();
    queue->addOperation(load);
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(load->loadingArray()->count(), 3u * 500 + 1);
}

TEST_F(ZEFFileLoadOperationDepthTest, StopsAtItsDepthInADeepTree)
{
    const DeepFolders deep(folder.path("loaded"), 200);
    load->setDepth(150);
    load->start();

    EXPECT_EQ(load->loadingArray()->count(), 3u * 150 + 1);
}

TEST_F(ZEFFileLoadOperationDepthTest, NeedsFewDescriptors)
{
    const DeepFolders deep(folder.path("loaded"), 100);
    {
        const FewDescriptors few(12);
        load->start();
    }

    EXPECT_EQ(load->loadingArray()->count(), 3u * 100 + 1);
}

TEST_F(ZEFFileLoadOperationDepthTest, FindsEveryFileOfAWideFolder)
{
    constexpr std::size_t count = 100000;
    for (std::size_t number = 0; number < count; ++number)
        folder.write("loaded/" + std::to_string(number), "");
    load->start();

    EXPECT_EQ(load->loadingArray()->count(), count + 1);
}

TEST_F(ZEFFileLoadOperationDepthTest, GetsByWithTheDescriptorsThatThereAre)
{
    const DeepFolders deep(folder.path("loaded"), 100);
    {
        const FewDescriptors few(3);
        load->start();
    }

    EXPECT_EQ(load->loadingArray()->count(), 3u * 100 + 1);
}

} // namespace

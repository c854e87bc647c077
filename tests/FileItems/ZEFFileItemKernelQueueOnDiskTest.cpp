// SPDX-License-Identifier: MIT
#include "tests/support/FileItemFixture.h"
#include "tests/support/FrozenFileSystem.h"

#include <gtest/gtest.h>

namespace {

// Real files and the system's notifier, with time stamps that never show anything.
class ZEFFileItemKernelQueueOnDiskTest : public FileItemFixture {
protected:
    ZEFFileItemKernelQueueOnDiskTest()
    {
        folder.write("file");
        folder.makeFolder("folder");
    }

    zef::Ref<ZEFFileItem> watched(std::string_view name)
    {
        auto result = item(name);
        result->initKQueue();
        EXPECT_EQ(result->changesForObserver(observer.get()), unchanged);
        EXPECT_EQ(result->changesForObserver(observer.get()), unchanged);
        return result;
    }

    ZEFFileChanges changes(ZEFFileItem& file) { return file.changesForObserver(observer.get()); }

    FrozenFileSystem frozen;
};

INSTANTIATE_TEST_SUITE_P(, ZEFFileItemKernelQueueOnDiskTest,
    testing::Values(Spelling::direct, Spelling::throughLink), nameOfSpelling);

TEST_P(ZEFFileItemKernelQueueOnDiskTest, NoticesAWriteThatNoTimeStampShowsOnlyWhileItIsInUse)
{
    const auto file = item("file");
    EXPECT_EQ(changes(*file.get()), unchanged);
    folder.append("file", "more");
    EXPECT_EQ(changes(*file.get()), unchanged);

    file->initKQueue();
    folder.append("file", "more");
    EXPECT_EQ(changes(*file.get()), changed);
    EXPECT_EQ(changes(*file.get()), unchanged);
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, NoticesWhatComesAndGoesInAFolder)
{
    const auto directory = watched("folder");

    folder.write("folder/file");
    EXPECT_EQ(changes(*directory.get()), changed);
    folder.rename("folder/file", "folder/renamed");
    EXPECT_EQ(changes(*directory.get()), changed);
    folder.remove("folder/renamed");
    EXPECT_EQ(changes(*directory.get()), changed);
    EXPECT_EQ(changes(*directory.get()), unchanged);
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, NoticesNothingOfWhatIsWrittenInAFoldersFiles)
{
    folder.write("folder/file");
    const auto directory = watched("folder");

    folder.append("folder/file", "more");

    EXPECT_EQ(changes(*directory.get()), unchanged);
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, TellsTwoObserversOfOneEvent)
{
    const auto file = watched("file");
    file->registerFileObserver(other.get());
    folder.append("file", "more");

    EXPECT_EQ(changes(*file.get()), changed);
    EXPECT_EQ(file->changesForObserver(other.get()), changed);
    EXPECT_EQ(file->changesForObserver(other.get()), unchanged);
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, KeepsWatchingAFileThatIsRenamed)
{
    const auto file = watched("file");
    folder.rename("file", "renamed");
    EXPECT_EQ(changes(*file.get()), moved);
    EXPECT_FALSE(changes(*file.get()).pathChanged);

    folder.append("renamed", "more");

    EXPECT_EQ(changes(*file.get()), changed);
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, WatchesAFileThatWasRenamedBeforeItBegan)
{
    const auto file = item("file");
    changes(*file.get());
    folder.rename("file", "renamed");
    folder.write("file", "another");

    file->initKQueue();
    EXPECT_EQ(changes(*file.get()), moved);
    EXPECT_FALSE(changes(*file.get()).pathChanged);
    folder.append("file", "more");
    EXPECT_EQ(changes(*file.get()), unchanged);
    folder.append("renamed", "more");
    EXPECT_EQ(changes(*file.get()), changed);
    EXPECT_TRUE(log.lines().empty());
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, LosesNoEventWhenItBeginsAnew)
{
    const auto file = watched("file");
    folder.append("file", "more");

    file->initKQueue();

    EXPECT_EQ(changes(*file.get()), changed);
    EXPECT_EQ(changes(*file.get()), unchanged);
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, CantWatchAFileThatIsGone)
{
    const auto file = item("file");
    folder.remove("file");

    file->initKQueue();

    EXPECT_TRUE(file->usingKQueue());
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{
            "Error getting file descriptor for file " + url("file").absoluteString() });
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, TellsTheLossOfAFileThatItWatches)
{
    const auto file = watched("file");
    folder.remove("file");

    EXPECT_EQ(changes(*file.get()), lost);
    EXPECT_EQ(changes(*file.get()), nothingToTell);
    EXPECT_TRUE(log.lines().empty());
}

TEST_P(ZEFFileItemKernelQueueOnDiskTest, WatchesAFileThatMayNotBeRead)
{
    folder.chmod("file", 0);
    const auto file = item("file");
    file->initKQueue();
    EXPECT_TRUE(changes(*file.get()).exists);

    folder.rename("file", "renamed");

    EXPECT_EQ(changes(*file.get()), moved);
    EXPECT_TRUE(file->usingKQueue());
    EXPECT_TRUE(log.lines().empty());
}

} // namespace

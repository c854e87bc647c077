// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/RecursiveLoadOperationFixture.h"

#include <atomic>
#include <filesystem>
#include <map>
#include <mutex>
#include <thread>

namespace {

using zef::makeRef;
using zef::Ref;

/// Walks of trees that others change, or read, at the same time.
class ZEFFileLoadOperationWalkRaceTest : public RecursiveLoadOperationFixture {
protected:
    static constexpr int folderCount = 10;
    static constexpr int fileCount = 60;

    ZEFFileLoadOperationWalkRaceTest()
    {
        std::string path = "loaded";
        for (int level = 0; level < folderCount; ++level) {
            path += "/stays" + std::to_string(level);
            folder.makeFolder(path);
            _folders.push_back(folder.path(path));
            for (int number = 0; number < fileCount; ++number)
                folder.write(path + "/stays-" + std::to_string(number), "");
        }
    }

    ~ZEFFileLoadOperationWalkRaceTest() override
    {
        log.clear(); // of what came and went
    }

    Ref<ZEFFileLoadOperation> newWalk()
    {
        auto walk = makeRef<ZEFFileLoadOperation>();
        walk->setRecursive(true);
        auto files = makeRef<ZEFFileItemArray>();
        files->addObject(loaded);
        walk->setFilesToIterate(files.get());
        return walk;
    }

    /// Makes, renames and removes files and folders among those that stay.
    void meddle(std::size_t round) const
    {
        std::error_code ignored;
        const auto& folderPath = _folders[round % _folders.size()];
        const auto path = folderPath + "/goes" + std::to_string(round % 7);
        std::filesystem::create_directory(path, ignored);
        std::filesystem::create_directory(path + "/below", ignored);
        std::filesystem::rename(path, path + "-renamed", ignored);
        std::filesystem::create_hard_link(folderPath + "/stays-1", path, ignored);
        std::filesystem::remove(path, ignored);
        std::filesystem::create_symlink("nowhere", path, ignored);
        std::filesystem::remove_all(path + "-renamed", ignored);
        std::filesystem::remove(path, ignored);
    }

    static std::map<std::string, int> countsOfStaying(const ZEFFileLoadOperation& walk)
    {
        std::map<std::string, int> counts;
        for (const auto& each : *walk.loadingArray()) {
            const auto& url = each->url();
            if (url.name().starts_with("stays"))
                ++counts[std::string(url.path())];
        }
        return counts;
    }

private:
    std::vector<std::string> _folders;
};

TEST_F(ZEFFileLoadOperationWalkRaceTest, FindsEveryFileThatStaysOnceWhileOthersComeAndGo)
{
    std::atomic<bool> isOver = false;
    std::thread meddler([&] {
        for (std::size_t round = 0; !isOver; ++round)
            meddle(round);
    });
    for (int round = 0; round < 10; ++round) {
        const auto walk = newWalk();
        walk->start();
        auto counts = countsOfStaying(*walk);
        // It has a second name now and then.
        std::erase_if(counts, [](const auto& each) { return each.first.ends_with("/stays-1"); });
        EXPECT_EQ(counts.size(), static_cast<std::size_t>(folderCount * fileCount));
        for (const auto& [path, count] : counts)
            EXPECT_EQ(count, 1) << path;
    }
    isOver = true;
    meddler.join();
}

TEST_F(ZEFFileLoadOperationWalkRaceTest, LetsOthersReadItsArrayUnderTheLockWhileItRuns)
{
    const auto walk = newWalk();
    const auto queue = makeRef<zef::OperationQueue>();
    queue->addOperation(walk);
    std::size_t last = 0;
    while (!walk->isFinished()) {
        std::lock_guard lock(*walk->loadingArrayLock());
        const auto count = walk->loadingArray()->count();
        EXPECT_GE(count, last);
        last = count;
        for (const auto& each : *walk->loadingArray())
            EXPECT_TRUE(each);
    }
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_EQ(
        walk->loadingArray()->count(), static_cast<std::size_t>(folderCount * (fileCount + 1) + 1));
}

TEST_F(ZEFFileLoadOperationWalkRaceTest, FindsTheSameItemsInWalksAtTheSameTime)
{
    const auto queue = makeRef<zef::OperationQueue>();
    queue->setMaxConcurrentOperationCount(8);
    std::vector<Ref<ZEFFileLoadOperation>> walks;
    for (int number = 0; number < 8; ++number) {
        walks.push_back(newWalk());
        queue->addOperation(walks.back());
    }
    queue->waitUntilAllOperationsAreFinished();

    const auto& first = *walks[0]->loadingArray();
    for (const auto& walk : walks) {
        ASSERT_EQ(walk->loadingArray()->count(), first.count());
        for (std::size_t index = 0; index < first.count(); ++index)
            EXPECT_EQ(walk->loadingArray()->objectAtIndex(index), first.objectAtIndex(index));
    }
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"

#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

class ZEFFileRegistryConcurrencyTest : public FakeFileItemFixture {
protected:
    // Runs `work(thread number)` on several threads at once.
    template <typename Work> static void onThreads(int count, Work&& work)
    {
        std::vector<std::thread> threads;
        for (int index = 0; index < count; ++index)
            threads.emplace_back([&work, index] { work(index); });
        for (auto& thread : threads)
            thread.join();
    }

    static std::string path(int index) { return "/file " + std::to_string(index); }
};

TEST_F(ZEFFileRegistryConcurrencyTest, YieldsOneObjectToAllThreadsThatKeepIt)
{
    constexpr int fileCount = 200;
    for (int index = 0; index < fileCount; ++index)
        files.addFile(path(index));
    std::vector<std::vector<zef::Ref<ZEFFileItem>>> found(4);

    onThreads(4, [&](int thread) {
        for (int index = 0; index < fileCount; ++index)
            found[static_cast<std::size_t>(thread)].push_back(item(path(index)));
    });

    for (const auto& items : found)
        EXPECT_EQ(items, found.front());
}

// The last release on one thread meets the look-up on another, over and over.
TEST_F(ZEFFileRegistryConcurrencyTest, YieldsALiveObjectWhileOthersLetItGo)
{
    constexpr int fileCount = 3;
    constexpr int rounds = 4000;
    for (int index = 0; index < fileCount; ++index)
        files.addFile(path(index));
    std::atomic<int> wrong{ 0 };

    onThreads(4, [&](int thread) {
        for (int round = 0; round < rounds; ++round) {
            const auto name = path((round + thread) % fileCount);
            const auto one = item(name);
            const auto again = item(name);
            wrong += one != again || !one->isValid() || one->retainCount() < 2;
        }
    });

    EXPECT_EQ(wrong, 0);
    EXPECT_TRUE(log.lines().empty());
    for (int index = 0; index < fileCount; ++index) {
        const auto stat = this->stat(path(index));
        EXPECT_FALSE(ZEFFileRegistry::item(stat.device, stat.inode));
    }
}

TEST_F(ZEFFileRegistryConcurrencyTest, YieldsEntriesOfListingsToManyThreads)
{
    constexpr int fileCount = 50;
    std::vector<zef::Stat> stats;
    for (int index = 0; index < fileCount; ++index)
        stats.push_back(files.addFile(path(index)));
    std::atomic<int> wrong{ 0 };

    onThreads(4, [&](int) {
        for (int round = 0; round < 20; ++round) {
            for (int index = 0; index < fileCount; ++index) {
                const auto& stat = stats[static_cast<std::size_t>(index)];
                const auto one = ZEFFileItem::classObject.ZEF_newFileItemForEntry(
                    url(path(index)), zef::FSRef(stat), stat);
                wrong += one->fileiNode() != stat.inode;
            }
        }
    });

    EXPECT_EQ(wrong, 0);
}

// One thread uses the item; the others only ask what any thread may ask.
TEST_F(ZEFFileRegistryConcurrencyTest, AnswersOtherThreadsWhileItsOwnFollowsIt)
{
    files.addFile("/one");
    const auto file = item("/one");
    const auto reference = ref("/one");
    locator.setPlace(reference, url("/two"));
    std::atomic<bool> isDone{ false };
    std::atomic<int> wrong{ 0 };
    std::vector<std::thread> askers;
    for (int index = 0; index < 3; ++index) {
        askers.emplace_back([&] {
            while (!isDone) {
                zef::FSRef copy;
                const auto where = file->url();
                wrong += where && where != url("/one") && where != url("/two");
                file->ZEF_locate();
                file->ZEF_keepReference();
                if (file->ZEF_copyReference(copy))
                    wrong += copy.inode() != file->fileiNode();
                file->description();
            }
        });
    }

    for (int round = 0; round < 500; ++round) {
        files.rename("/one", "/two");
        locator.setPlace(reference, url("/two"));
        file->changesForObserver(observer.get());
        files.rename("/two", "/one");
        locator.setPlace(reference, url("/one"));
        file->currentURL();
    }
    locator.setPlace(reference, nullptr);
    files.remove("/one");
    file->changesForObserver(observer.get());
    isDone = true;
    for (auto& asker : askers)
        asker.join();

    EXPECT_EQ(wrong, 0);
    EXPECT_FALSE(file->isValid());
}

// A listing's thread takes the reference while the item's own thread finds the file lost.
TEST_F(ZEFFileRegistryConcurrencyTest, KeepsNoReferenceOfAnItemThatIsLostMeanwhile)
{
    constexpr int rounds = 500;
    for (int round = 0; round < rounds; ++round) {
        const auto stat = files.addFile(path(round));
        const zef::FSRef reference(stat);
        auto file = ZEFFileItem::classObject.ZEF_newFileItemForEntry(
            url(path(round)), reference, stat);
        files.remove(path(round));
        onThreads(3, [&](int thread) {
            if (thread == 0)
                file->currentURL();
            else
                file->ZEF_keepReference();
        });
        ASSERT_FALSE(file->isValid());
        ASSERT_EQ(locator.uses(reference), 0);
        file = nullptr;
        ASSERT_EQ(locator.uses(reference), 0);
    }
}

} // namespace

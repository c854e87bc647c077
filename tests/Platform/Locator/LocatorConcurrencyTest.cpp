// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/HoldingLocator.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int rounds = 150;

class LocatorConcurrencyTest : public testing::Test, protected HoldingLocator {
protected:
    LocatorConcurrencyTest() { zef::Locator::replaceShared(&locator); }
    ~LocatorConcurrencyTest() override { zef::Locator::replaceShared(nullptr); }

    // Renames a file of its own to and fro; says how often it wasn't found where it was.
    int followOneFile(const std::string& name)
    {
        auto url = folder.write(name);
        auto file = ref(url);
        locator.retain(file, url);
        int failures = 0;
        for (int round = 0; round < rounds; ++round) {
            const auto renamed = folder.rename(
                round % 2 ? name + "'" : name, round % 2 ? name : name + "'");
            failures += !(locator.locate(file, url) == renamed);
            url = renamed;
        }
        locator.release(file);
        return failures;
    }

    // Retains and releases a folder that others do the same with.
    int shareOneFolder()
    {
        const auto url = folder.folderUrl();
        int failures = 0;
        for (int round = 0; round < rounds; ++round) {
            auto shared = ref(url);
            locator.retain(shared, url);
            failures += !(locator.locate(shared, nullptr) == url);
            locator.release(shared);
        }
        return failures;
    }

    void disturb()
    {
        for (int round = 0; round < rounds; ++round) {
            locator.setDescriptorBudget(round % 3 ? 100 : 2);
            locator.giveBackOneDescriptor();
            locator.setDescriptorPolicy(
                round % 2 ? zef::DescriptorPolicy::always : zef::DescriptorPolicy::fixedVolumes);
            locator.releaseVolume(folder.path());
        }
    }
};

TEST_F(LocatorConcurrencyTest, FindsEachFileWhileOthersAreLookedForAndDescriptorsAreClosed)
{
    int failures[3] = {};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int index = 0; index < 3; ++index)
        threads.emplace_back(
            [&, index] { failures[index] = followOneFile(std::to_string(index)); });
    threads.emplace_back([this] { disturb(); });
    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(failures[0] + failures[1] + failures[2], 0);
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

TEST_F(LocatorConcurrencyTest, FindsAFolderThatSeveralThreadsRetainAndRelease)
{
    int failures[3] = {};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int index = 0; index < 3; ++index)
        threads.emplace_back([&, index] { failures[index] = shareOneFolder(); });
    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(failures[0] + failures[1] + failures[2], 0);
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/FolderIndexCache.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "tests/support/FewDescriptors.h"
#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr std::size_t enough = 1000;
constexpr zef::FolderIndexCache::Limits limits{ .seconds = 1, .values = 40, .cost = 300 };

class FolderIndexCacheTest : public testing::Test {
protected:
    FolderIndexCacheTest() { zef::Clock::replaceShared(&clock); }
    ~FolderIndexCacheTest() override { zef::Clock::replaceShared(nullptr); }

    zef::Ref<const zef::FolderIndex> index(std::size_t limit = enough)
    {
        return indexes.index(folder.folderUrl(), limit);
    }

    // The folder at `path` as it is now.
    zef::Ref<const zef::FolderIndex> indexAt(const std::string& path)
    {
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::system().statLink(path.c_str(), stat), 0);
        return indexes.index(path.c_str(), stat, enough);
    }

    SteppedClock clock;
    TemporaryFolder folder;
    zef::FolderIndexCache indexes{ limits };
};

TEST_F(FolderIndexCacheTest, KeepsAnIndexForASecond)
{
    const auto first = index();
    clock.advance(0.9);

    EXPECT_EQ(index(), first);
    clock.advance(0.2);
    EXPECT_FALSE(index() == first);
}

TEST_F(FolderIndexCacheTest, ReadsAFolderAgainThatChanged)
{
    const auto first = index();
    folder.write("a file");
    // Not every file system shows a change in the same tick, but it shows that of the size.
    folder.makeFolder("a folder");
    folder.setModificationTime("", 1000);

    EXPECT_EQ(index()->count(), 2u);
}

TEST_F(FolderIndexCacheTest, ReadsAFolderAgainWhenItIsAskedTo)
{
    const auto first = index();
    const auto second = indexes.index(
        folder.folderUrl(), enough, zef::FolderIndexCache::Freshness::readAgain);

    EXPECT_FALSE(second == first);
    EXPECT_EQ(index(), second);
}

TEST_F(FolderIndexCacheTest, ReadsMoreOfAFolderWhenMoreIsWanted)
{
    for (int number = 0; number < 10; ++number)
        folder.write(std::to_string(number));

    EXPECT_EQ(index(3)->count(), 3u);
    EXPECT_EQ(index(20)->count(), 10u);
    EXPECT_EQ(index(3)->count(), 10u);
}

TEST_F(FolderIndexCacheTest, FollowsALinkToAFolder)
{
    folder.makeFolder("inner");
    folder.write("inner/file");
    folder.symlink("inner", "link");

    EXPECT_EQ(indexes.index(folder.folderUrl("link"), enough)->count(), 1u);
}

TEST_F(FolderIndexCacheTest, FollowsALinkOnlyWithASlashBehindIt)
{
    folder.makeFolder("inner");
    folder.symlink("inner", "link");

    EXPECT_FALSE(indexAt(folder.path("link")));
    EXPECT_TRUE(indexAt(folder.path("link/")));
}

TEST_F(FolderIndexCacheTest, KnowsAFolderByAnyPath)
{
    folder.makeFolder("inner");
    folder.symlink("inner", "link");

    EXPECT_EQ(indexAt(folder.path("inner")), indexAt(folder.path("link/")));
}

TEST_F(FolderIndexCacheTest, HasNoneOfWhatIsNoFolder)
{
    EXPECT_FALSE(indexes.index(folder.write("file"), enough));
    EXPECT_FALSE(indexes.index(folder.url("missing"), enough));
    EXPECT_FALSE(indexes.index(nullptr, enough));
}

TEST_F(FolderIndexCacheTest, ForgetsTheIndexesThatAreTooOld)
{
    const auto first = index();
    clock.advance(2);
    EXPECT_EQ(first->retainCount(), 2u);
    indexes.forgetOld();

    EXPECT_EQ(first->retainCount(), 1u);
}

TEST_F(FolderIndexCacheTest, KeepsAsManyIndexesAsOneSearchMakes)
{
    std::vector<zef::Ref<const zef::FolderIndex>> first;
    const auto url = [&](int number) { return folder.folderUrl(std::to_string(number)); };
    for (int number = 0; number < 60; ++number) {
        folder.makeFolder(std::to_string(number));
        first.push_back(indexes.index(url(number), enough));
    }

    EXPECT_EQ(indexes.index(url(59), enough), first[59]);
    EXPECT_EQ(indexes.index(url(59 - 32), enough), first[59 - 32]);
    EXPECT_EQ(first[0]->retainCount(), 1u);
}

TEST_F(FolderIndexCacheTest, KeepsAsManyEntriesAsItMay)
{
    for (const char* name : { "one", "two", "three" }) {
        folder.makeFolder(name);
        for (int number = 0; number < 100; ++number)
            folder.write(std::string(name) + "/" + std::to_string(number));
    }
    const auto first = indexes.index(folder.folderUrl("one"), enough);
    const auto second = indexes.index(folder.folderUrl("two"), enough);
    const auto third = indexes.index(folder.folderUrl("three"), enough);

    EXPECT_EQ(first->retainCount(), 1u);
    EXPECT_EQ(second->retainCount(), 2u);
    EXPECT_EQ(third->retainCount(), 2u);
}

// No fixture: UndefinedBehaviorSanitizer looks at each object of a class with virtual functions by
// a pipe when it first meets it, and here there is none to be had.
TEST(FolderIndexCacheShortageTest, ReadsAFolderWithoutADescriptorLeft)
{
    TemporaryFolder folder;
    folder.write("file");
    const auto url = folder.folderUrl();
    zef::FolderIndexCache indexes(limits);
    // All objects are met here first.
    zef::Locator::shared().giveBackOneDescriptor();
    zef::FolderIndexCache(limits).index(url, enough)->covers(enough);
    const FewDescriptors none(0);

    const auto read = indexes.index(url, enough);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->covers(enough));
}

} // namespace

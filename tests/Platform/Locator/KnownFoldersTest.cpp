// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/KnownFolders.h"

#include <gtest/gtest.h>

namespace {

zef::FSRef folder(std::uint64_t inode, std::uint32_t device = 1)
{
    zef::Stat stat;
    stat.device = device;
    stat.inode = inode;
    stat.mode = 0040755;
    return zef::FSRef(stat);
}

zef::FileURL url(std::string_view path)
{
    return zef::FileURL::fromPath(path, zef::URLKind::folder);
}

class KnownFoldersTest : public testing::Test {
protected:
    zef::FileURL find(std::uint64_t inode)
    {
        const auto* found = folders.find({ inode, 1 });
        return found ? found->url : nullptr;
    }

    zef::KnownFolders folders;
};

TEST_F(KnownFoldersTest, FindsAFolderByItsNumbers)
{
    folders.enter(folder(1), url("/one"));
    folders.enter(folder(2), url("/two"));

    EXPECT_EQ(find(1), url("/one"));
    EXPECT_EQ(find(2), url("/two"));
    EXPECT_FALSE(folders.find({ 1, 7 }));
}

TEST_F(KnownFoldersTest, KnowsAFolderUntilItsLastUseIsGone)
{
    folders.enter(folder(1), url("/one"));
    folders.enter(folder(1), url("/one"));

    EXPECT_FALSE(folders.leave(folder(1)));
    EXPECT_TRUE(find(1));
    EXPECT_TRUE(folders.leave(folder(1)));
    EXPECT_FALSE(find(1));
    EXPECT_FALSE(folders.leave(folder(1)));
    EXPECT_EQ(folders.count(), 0u);
}

TEST_F(KnownFoldersTest, LearnsWhereAFolderWasSeen)
{
    folders.enter(folder(1), url("/one"));
    folders.learn(folder(1), url("/moved"));
    folders.learn(folder(2), url("/two"));

    EXPECT_EQ(find(1), url("/moved"));
    EXPECT_EQ(folders.count(), 1u);
}

TEST_F(KnownFoldersTest, ListsTheLatestOnesOfADeviceFirst)
{
    folders.enter(folder(1), url("/one"));
    folders.enter(folder(2), url("/two"));
    folders.enter(folder(3, 9), url("/elsewhere"));
    folders.enter(folder(4), nullptr);
    folders.enter(folder(5), url("/five"));
    folders.learn(folder(1), url("/moved"));
    const auto recent = folders.recentOnDevice(1, 2);

    ASSERT_EQ(recent.size(), 2u);
    EXPECT_EQ(recent[0].url, url("/moved"));
    EXPECT_EQ(recent[1].url, url("/five"));
    EXPECT_EQ(folders.recentOnDevice(1, 100).size(), 3u);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/FolderIndex.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr auto always = std::numeric_limits<double>::infinity();

class FolderIndexTest : public testing::Test {
protected:
    zef::Ref<zef::FolderIndex> read(
        std::size_t limit = 1000, zef::EntryNumbers numbers = zef::EntryNumbers::automatic)
    {
        const int descriptor = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        auto index = zef::FolderIndex::read(descriptor, limit, numbers);
        ::close(descriptor);
        return index;
    }

    zef::Stat stat(std::string_view name)
    {
        zef::Stat result;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), result);
        return result;
    }

    std::uint64_t inode(std::string_view name) { return stat(name).inode; }

    // Until the folder's last change is long past for the kernel's tick.
    void settle()
    {
        while (zef::Clock::system().now().secondsSince1970()
            < zef::secondsOfTimeStamp(stat("").statusChangeTime) + 0.05)
            continue;
    }

    TemporaryFolder folder;
};

TEST_F(FolderIndexTest, IsEmptyForAnEmptyFolder)
{
    const auto index = read();

    ASSERT_TRUE(index);
    EXPECT_EQ(index->count(), 0u);
    EXPECT_EQ(index->name(inode("")), "");
}

TEST_F(FolderIndexTest, FindsNamesOfAnyBytesByNumber)
{
    const std::string longest(255, 'n');
    for (const std::string name : { "a", "two\nlines\xff", longest.c_str(), ".hidden" })
        folder.write(name);
    folder.makeFolder("inner");
    folder.symlink("missing", "link");
    const auto index = read();

    EXPECT_EQ(index->count(), 6u);
    for (const std::string name :
        { "a", "two\nlines\xff", longest.c_str(), ".hidden", "inner", "link" })
        EXPECT_EQ(index->name(inode(name)), name);
}

TEST_F(FolderIndexTest, FindsAllNamesOfOneFile)
{
    folder.write("one");
    folder.link("one", "two");
    folder.write("other");
    const auto index = read();
    const auto number = inode("one");

    EXPECT_EQ((std::set<std::string_view>{ index->name(number, 0), index->name(number, 1) }),
        (std::set<std::string_view>{ "one", "two" }));
    EXPECT_EQ(index->name(number, 2), "");
}

TEST_F(FolderIndexTest, FindsTheSameWhenItAsksEachEntry)
{
    for (int number = 0; number < 50; ++number)
        folder.write(std::to_string(number));
    const auto index = read(1000, zef::EntryNumbers::asked);

    EXPECT_EQ(index->count(), 50u);
    for (int number = 0; number < 50; ++number)
        EXPECT_EQ(index->name(inode(std::to_string(number))), std::to_string(number));
}

TEST_F(FolderIndexTest, ReadsLargeFoldersWhole)
{
    constexpr int files = 600;
    for (int number = 0; number < files; ++number)
        folder.write("a rather long name so that one buffer does not hold all of them "
            + std::to_string(number));
    const auto index = read(100000);

    EXPECT_EQ(index->count(), static_cast<std::size_t>(files));
    EXPECT_TRUE(index->covers(1000000));
}

TEST_F(FolderIndexTest, StopsAtItsLimitAndSaysSo)
{
    for (int number = 0; number < 20; ++number)
        folder.write(std::to_string(number));
    const auto index = read(5);

    EXPECT_EQ(index->count(), 5u);
    EXPECT_TRUE(index->covers(5));
    EXPECT_FALSE(index->covers(6));
}

TEST_F(FolderIndexTest, CoversEverythingWhenTheLimitWasNotReached)
{
    folder.write("file");

    EXPECT_TRUE(read(1)->covers(1000));
}

TEST_F(FolderIndexTest, IsNullForWhatCanNotBeRead)
{
    const int file = ::open(folder.path().c_str(), O_PATH | O_CLOEXEC);

    EXPECT_FALSE(zef::FolderIndex::read(file, 100));
    EXPECT_FALSE(zef::FolderIndex::read(-1, 100));
    ::close(file);
}

TEST_F(FolderIndexTest, IsOfItsFolderUntilThatChanges)
{
    settle();
    const auto index = read();

    EXPECT_TRUE(index->isOf(stat("")));
    folder.write("file");
    EXPECT_FALSE(index->isOf(stat("")));
    EXPECT_FALSE(index->isOf(stat("file")));
}

TEST_F(FolderIndexTest, DoesNotTrustAFolderThatHasJustChanged)
{
    // A machine that is busy elsewhere may be late, but not every time.
    bool isTrusted = true;
    for (int tries = 0; isTrusted && tries < 10000; ++tries) {
        folder.write(std::to_string(tries));
        isTrusted = !read()->mayHaveMissedAChangeBefore(always);
    }

    EXPECT_FALSE(isTrusted);
}

TEST_F(FolderIndexTest, MissesNoChangeFromBeforeItWasRead)
{
    const auto index = read();

    EXPECT_FALSE(index->mayHaveMissedAChangeBefore(index->secondsWhenRead() - 1));
}

TEST_F(FolderIndexTest, TrustsAFolderThatChangedLongAgo)
{
    folder.write("file");
    settle();

    EXPECT_FALSE(read()->mayHaveMissedAChangeBefore(always));
}

} // namespace

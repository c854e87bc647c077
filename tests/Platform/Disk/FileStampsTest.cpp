// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileStamps.h"

#include <gtest/gtest.h>

namespace {

using zef::FileStamps;
using zef::StampClock;

constexpr std::time_t changeTime = 1700000000;
constexpr long changeNanoseconds = 500000000;

class FileStampsTest : public testing::Test {
protected:
    FileStampsTest()
    {
        stat.inode = 7;
        stat.size = 100;
        stat.modificationTime = { changeTime, changeNanoseconds };
        stat.statusChangeTime = { changeTime, changeNanoseconds };
    }

    // A look so many seconds after the change.
    FileStamps lookAfter(double seconds, StampClock stampClock = StampClock::ours) const
    {
        const double moment = static_cast<double>(changeTime) + changeNanoseconds / 1e9 + seconds;
        return { stat, zef::Date::withSecondsSince1970(moment), stampClock };
    }

    // Whether a look sees that `change` was made to the file long after it changed before.
    template <typename Change> bool sees(Change change)
    {
        const auto earlier = lookAfter(100);
        change();
        return lookAfter(200).mayHaveChangedSince(earlier);
    }

    zef::Stat stat;
};

TEST_F(FileStampsTest, SeesNoChangeWhereThereIsNone)
{
    EXPECT_FALSE(sees([] {}));
}

TEST_F(FileStampsTest, SeesEachStampToTheNanosecond)
{
    EXPECT_TRUE(sees([this] { stat.modificationTime.tv_nsec += 1; }));
    EXPECT_TRUE(sees([this] { stat.statusChangeTime.tv_nsec += 1; }));
    EXPECT_TRUE(sees([this] { stat.modificationTime.tv_sec -= 1; }));
    EXPECT_TRUE(sees([this] { stat.statusChangeTime.tv_sec -= 1; }));
}

TEST_F(FileStampsTest, SeesSizeAndInodeNumber)
{
    EXPECT_TRUE(sees([this] { stat.size += 20; }));
    EXPECT_TRUE(sees([this] { stat.inode += 1; }));
}

TEST_F(FileStampsTest, SeesThatAFileCameOrWent)
{
    EXPECT_TRUE(FileStamps().mayHaveChangedSince(lookAfter(100)));
    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(FileStamps()));
    EXPECT_FALSE(FileStamps().mayHaveChangedSince(FileStamps()));
}

TEST_F(FileStampsTest, DoubtsALookWithinATickOfTheChange)
{
    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(lookAfter(0)));
    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(lookAfter(0.049)));
    EXPECT_FALSE(lookAfter(100).mayHaveChangedSince(lookAfter(0.051)));
}

TEST_F(FileStampsTest, DoubtsStampsInTheFutureOnlyWhenTheyAreNear)
{
    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(lookAfter(-0.049)));
    EXPECT_FALSE(lookAfter(100).mayHaveChangedSince(lookAfter(-0.051)));
}

TEST_F(FileStampsTest, DoubtsALookWithinTwoSecondsByAnotherHostsClock)
{
    const auto other = StampClock::otherHosts;

    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(lookAfter(1.9, other)));
    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(lookAfter(-1.9, other)));
    EXPECT_FALSE(lookAfter(100).mayHaveChangedSince(lookAfter(2.1, other)));
}

TEST_F(FileStampsTest, DoubtsALookWithinTwoSecondsOfAStampInWholeSeconds)
{
    stat.modificationTime.tv_nsec = 0;
    stat.statusChangeTime.tv_nsec = 0;

    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(lookAfter(1.4)));
    EXPECT_FALSE(lookAfter(100).mayHaveChangedSince(lookAfter(1.6)));
}

TEST_F(FileStampsTest, DoubtsARecentStatusChangeOfAFileWithAnOldModificationTime)
{
    stat.modificationTime.tv_sec = 1000;

    EXPECT_TRUE(lookAfter(100).mayHaveChangedSince(lookAfter(0.01)));
}

} // namespace

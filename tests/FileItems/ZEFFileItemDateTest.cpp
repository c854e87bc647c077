// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>

namespace {

class ZEFFileItemDateTest : public FakeFileItemFixture {
protected:
    ZEFFileItemDateTest() { files.addFile("/file"); }

    static std::optional<zef::Date> dateOf(const zef::Stat& stat)
    {
        return zef::Date::withSecondsSince1970(zef::secondsOfTimeStamp(stat.modificationTime));
    }

    void setTimes(std::time_t modificationSeconds, long modificationNanoseconds,
        std::time_t statusSeconds = 7, long statusNanoseconds = 0)
    {
        auto stat = this->stat("/file");
        stat.modificationTime = { modificationSeconds, modificationNanoseconds };
        stat.statusChangeTime = { statusSeconds, statusNanoseconds };
        files.setStat("/file", stat);
    }
};

TEST_F(ZEFFileItemDateTest, GivesTheDateOfItsMaking)
{
    const auto date = dateOf(stat("/file"));
    const auto file = item("/file");
    files.write("/file");

    EXPECT_EQ(file->modificationDate(), date);
    EXPECT_EQ(file->modificationDate(), date);
}

TEST_F(ZEFFileItemDateTest, FindsNoCurrentDateWhileNothingChangedAndNobodyAskedBefore)
{
    const auto file = item("/file");

    EXPECT_EQ(file->currentModificationDate(), std::nullopt);
    EXPECT_EQ(file->currentModificationDate(), std::nullopt);
}

TEST_F(ZEFFileItemDateTest, GivesTheDateThatWasAskedForBeforeWhileNothingChanged)
{
    const auto file = item("/file");
    const auto date = file->modificationDate();

    EXPECT_EQ(file->currentModificationDate(), date);
}

TEST_F(ZEFFileItemDateTest, GivesTheNewDateAfterAWrite)
{
    const auto file = item("/file");
    const auto before = file->modificationDate();
    const auto stat = files.write("/file");

    EXPECT_EQ(file->currentModificationDate(), dateOf(stat));
    EXPECT_EQ(file->modificationDate(), dateOf(stat));
    EXPECT_NE(file->modificationDate(), before);
    EXPECT_EQ(file->currentModificationDate(), dateOf(stat));
}

TEST_F(ZEFFileItemDateTest, GivesTheDateAfterAChangeOfTheStatusAlone)
{
    setTimes(100, 0, 100, 0);
    const auto file = item("/file");
    setTimes(100, 0, 101, 0);

    EXPECT_EQ(file->currentModificationDate(), zef::Date::withSecondsSince1970(100));
}

TEST_F(ZEFFileItemDateTest, IsMadeAnewFromItsOwnRecordAfterAnObserverSawAChange)
{
    const auto file = item("/file");
    const auto before = file->modificationDate();
    file->registerFileObserver(observer.get());
    const auto stat = files.write("/file");
    EXPECT_EQ(file->changesForObserver(observer.get()), changed);

    // The observer's look went into its own record alone.
    EXPECT_EQ(file->modificationDate(), before);
    EXPECT_EQ(file->currentModificationDate(), dateOf(stat));
}

TEST_F(ZEFFileItemDateTest, IsForgottenWhenAnObserverSeesAChange)
{
    const auto file = item("/file");
    file->registerFileObserver(observer.get());
    const auto stat = files.write("/file");
    file->currentModificationDate();
    EXPECT_EQ(file->changesForObserver(observer.get()), changed);

    EXPECT_EQ(file->currentModificationDate(), std::nullopt);
    EXPECT_EQ(file->modificationDate(), dateOf(stat));
}

TEST_F(ZEFFileItemDateTest, PursuesNoFileThatMoved)
{
    const auto file = item("/file");
    const auto date = file->modificationDate();
    move("/file", "/renamed");
    files.write("/renamed");

    EXPECT_EQ(file->currentModificationDate(), date);
    EXPECT_EQ(locator.locateCount(), 0);
    EXPECT_EQ(file->url(), url("/file"));
    EXPECT_TRUE(file->isValid());
}

TEST_F(ZEFFileItemDateTest, TakesNoDateFromAnotherFileInItsPlace)
{
    const auto file = item("/file");
    const auto date = file->modificationDate();
    move("/file", "/renamed");
    files.addFile("/file");

    EXPECT_EQ(file->currentModificationDate(), date);
}

TEST_F(ZEFFileItemDateTest, TakesNoDateFromAYoungFileWithItsNumber)
{
    const auto file = item("/file");
    const auto date = file->modificationDate();
    files.remove("/file");
    files.setNextInode(file->fileiNode());
    files.addFile("/file");

    EXPECT_EQ(file->currentModificationDate(), date);
}

TEST_F(ZEFFileItemDateTest, HasNoCurrentDateOnceItIsLost)
{
    const auto file = item("/file");
    const auto date = file->modificationDate();
    files.remove("/file");
    file->currentURL();

    EXPECT_EQ(file->currentModificationDate(), std::nullopt);
    EXPECT_EQ(file->modificationDate(), date);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemDateTest, KeepsItsDateWhileTheDiskRefuses)
{
    const auto file = item("/file");
    const auto date = file->modificationDate();
    files.setError("/file", EACCES);

    EXPECT_EQ(file->currentModificationDate(), date);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemDateTest, CountsNegativeNanosecondsAsNone)
{
    setTimes(1000, -5);
    const auto file = item("/file");

    EXPECT_EQ(file->modificationDate(), zef::Date::withSecondsSince1970(1000));
}

TEST_F(ZEFFileItemDateTest, TakesStampsThatCountTheSameForUnchanged)
{
    setTimes(1000, -5, 2000, -7);
    const auto file = item("/file");
    file->registerFileObserver(observer.get());
    setTimes(1000, 0, 2000, -1);

    EXPECT_EQ(file->currentModificationDate(), std::nullopt);
    EXPECT_EQ(file->changesForObserver(observer.get()), unchanged);
}

TEST_F(ZEFFileItemDateTest, GivesDatesBeforeTheReferenceDateAndBefore1970)
{
    setTimes(-86400, 500000000);
    const auto file = item("/file");

    EXPECT_EQ(file->modificationDate()->secondsSince1970(), -86399.5);
    EXPECT_LT(file->modificationDate()->secondsSinceReferenceDate(), 0);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include "tests/support/FakeFileSystem.h"
#include "tests/support/NotifierFixture.h"

#include <gtest/gtest.h>

namespace {

// What a token reports that compares time stamps.
class ChangeNotifierStampsTest : public NotifierFixture {
protected:
    // The clock shows the moment of the last change of this file.
    void setClockToStamps(std::string_view name)
    {
        const auto seconds = zef::secondsOfTimeStamp(stat(name).statusChangeTime);
        clock.setWallClock(zef::Date::withSecondsSince1970(seconds));
    }
};

TEST_F(ChangeNotifierStampsTest, ReportsAChangeOnce)
{
    folder.write("a");
    const auto file = openByStamps("a");
    EXPECT_EQ(poll(file), 0);

    folder.append("a", "more");

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierStampsTest, ReportsADisappearanceOnceAndAReturnOnce)
{
    folder.write("a");
    const auto file = openByStamps("a");

    folder.remove("a");
    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);

    folder.write("a");
    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierStampsTest, TakesNoUrlForADisappearance)
{
    folder.write("a");
    auto file = openByStamps("a");

    file.url = nullptr;

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierStampsTest, LooksAtNothingWithoutAUrl)
{
    folder.write("a");
    auto file = openByStamps("a");
    file.url = nullptr;
    FakeFileSystem files;

    poll(file);

    EXPECT_EQ(files.statCount(), 0u);
}

TEST_F(ChangeNotifierStampsTest, LooksOnceAtEachPoll)
{
    folder.write("a");
    const auto file = openByStamps("a");
    FakeFileSystem files;

    poll(file);

    EXPECT_EQ(files.statCount(), 1u);
}

TEST_F(ChangeNotifierStampsTest, ReportsAnotherObjectInItsPlace)
{
    folder.write("a");
    folder.write("b");
    const auto file = openByStamps("a");

    folder.exchange("a", "b");

    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierStampsTest, ReportsOnceMoreWhatMayHaveHappenedWithinATick)
{
    folder.write("a");
    setClockToStamps("a");
    const auto file = openByStamps("a");
    clock.advance(1);

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierStampsTest, StaysOpenToDoubtUntilTheTickIsOver)
{
    folder.write("a");
    setClockToStamps("a");
    const auto file = openByStamps("a");
    clock.advance(0.01);
    EXPECT_EQ(poll(file), 1);
    clock.advance(1);

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierStampsTest, LosesNoRemovalWithinTheTickOfTheLastLook)
{
    folder.makeFolder("a");
    folder.write("a/one");
    folder.write("a/two");
    setClockToStamps("a");
    const auto watched = openByStamps("a");

    for (const auto* name : { "a/one", "a/two" }) {
        folder.remove(name);
        setClockToStamps("a");
        EXPECT_EQ(poll(watched), 1) << name;
    }
}

TEST_F(ChangeNotifierStampsTest, LosesNoSwapOfNamesOnTheRealClock)
{
    zef::Clock::replaceShared(nullptr);
    folder.makeFolder("a");
    folder.write("a/one");
    folder.write("a/two");
    const auto watched = openByStamps("a");

    for (int count = 0; count < 300; ++count) {
        folder.exchange("a/one", "a/two");
        ASSERT_EQ(poll(watched), 1) << count;
    }
}

TEST_F(ChangeNotifierStampsTest, GivesTokensOnHardLinksTheirOwnAnswers)
{
    folder.write("a");
    folder.link("a", "b");
    const auto first = openByStamps("a");
    const auto second = openByStamps("b");

    folder.append("a", "more");

    EXPECT_EQ(poll(first), 1);
    EXPECT_EQ(poll(second), 1);
    EXPECT_EQ(poll(first), 0);
}

} // namespace

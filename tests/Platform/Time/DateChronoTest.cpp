// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Time/DateChrono.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;
using std::chrono::system_clock;

TEST(DateChronoTest, TheReferenceDateIsTheFirstDayOf2001)
{
    using namespace std::chrono_literals;
    const system_clock::time_point reference = std::chrono::sys_days(2001y / 1 / 1);

    EXPECT_EQ(zef::timePointFromDate(zef::Date(0)), reference);
    EXPECT_EQ(zef::dateFromTimePoint(reference), zef::Date(0));
}

TEST(DateChronoTest, FractionsOfASecondAreKept)
{
    const system_clock::time_point moment(milliseconds(1500));

    EXPECT_EQ(zef::dateFromTimePoint(moment), zef::Date::withSecondsSince1970(1.5));
    EXPECT_EQ(zef::timePointFromDate(zef::Date::withSecondsSince1970(1.5)), moment);
}

TEST(DateChronoTest, MomentsBefore1970AreNegative)
{
    const system_clock::time_point moment(milliseconds(-250));

    EXPECT_EQ(zef::dateFromTimePoint(moment), zef::Date::withSecondsSince1970(-0.25));
    EXPECT_EQ(zef::timePointFromDate(zef::Date::withSecondsSince1970(-0.25)), moment);
}

} // namespace

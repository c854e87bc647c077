// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include <gtest/gtest.h>

namespace {

double seconds(std::time_t whole, long nanoseconds)
{
    return zef::secondsOfTimeStamp({ whole, nanoseconds });
}

TEST(TimeStampTest, CountsSecondsAndNanoseconds)
{
    EXPECT_EQ(seconds(0, 0), 0.0);
    EXPECT_EQ(seconds(1600000000, 500000000), 1600000000.5);
    EXPECT_EQ(seconds(-10, 250000000), -9.75);
}

TEST(TimeStampTest, CountsNegativeNanosecondsAsNone)
{
    EXPECT_EQ(seconds(5, -1), 5.0);
    EXPECT_EQ(seconds(5, -999999999), 5.0);
    EXPECT_EQ(seconds(-5, -500000000), -5.0);
}

TEST(TimeStampTest, TellsNeighbouringTicksOfTheKernelApart)
{
    EXPECT_NE(seconds(1700000000, 1000), seconds(1700000000, 2000));
    EXPECT_EQ(seconds(1700000000, 0), seconds(1700000000, 1));
}

} // namespace

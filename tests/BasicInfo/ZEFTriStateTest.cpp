// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFTriState.h"

#include <gtest/gtest.h>

namespace {

TEST(ZEFTriStateTest, IsNotKnownAtFirst)
{
    const ZEFTriState state;

    EXPECT_FALSE(state.isKnown());
    EXPECT_FALSE(state.isYes());
    EXPECT_EQ(state.rawValue(), -1);
}

TEST(ZEFTriStateTest, KeepsItsAnswer)
{
    ZEFTriState state;

    state.set(true);
    EXPECT_TRUE(state.isKnown());
    EXPECT_TRUE(state.isYes());
    EXPECT_EQ(state.rawValue(), 1);

    state.set(false);
    EXPECT_TRUE(state.isKnown());
    EXPECT_FALSE(state.isYes());
    EXPECT_EQ(state.rawValue(), 0);
}

TEST(ZEFTriStateTest, IsNotKnownAfterItForgot)
{
    ZEFTriState state;
    state.set(true);

    state.forget();

    EXPECT_FALSE(state.isKnown());
    EXPECT_EQ(state.rawValue(), -1);
}

} // namespace

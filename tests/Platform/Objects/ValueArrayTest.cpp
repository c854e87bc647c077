// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/ValueArray.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class ValueArrayTest : public testing::Test {
protected:
    ValueArrayTest()
    {
        array->addValue("one");
        array->addValue("two");
    }

    zef::Ref<zef::ValueArray<std::string>> array = zef::makeRef<zef::ValueArray<std::string>>();
};

TEST_F(ValueArrayTest, KeepsItsValuesInOrder)
{
    ASSERT_EQ(array->count(), 2u);
    EXPECT_EQ(array->valueAtIndex(0), "one");
    EXPECT_EQ(array->valueAtIndex(1), "two");
}

TEST_F(ValueArrayTest, VisitsEachValue)
{
    std::string all;
    array->enumerate([&](const std::string& value) { all += value + " "; });

    EXPECT_EQ(all, "one two ");
}

TEST_F(ValueArrayTest, ReportsAChangeDuringAWalk)
{
    EXPECT_THROW(array->enumerate([&](const std::string&) { array->addValue("three"); }),
        zef::MutationError);
    EXPECT_THROW(array->enumerate([&](const std::string&) { array->removeAllValues(); }),
        zef::MutationError);
    EXPECT_TRUE(array->isEmpty());
}

} // namespace

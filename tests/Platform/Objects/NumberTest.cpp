// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/Number.h"

#include <gtest/gtest.h>

namespace {

class OtherObject final : public ZEFObject { };

TEST(NumberTest, IsEqualToAnotherOneWithTheSameValue)
{
    const auto eight = zef::makeRef<zef::Number>(8);
    const auto other = zef::makeRef<zef::Number>(8);
    const auto nine = zef::makeRef<zef::Number>(9);

    EXPECT_TRUE(eight->isEqual(other.get()));
    EXPECT_EQ(eight->hash(), other->hash());
    EXPECT_FALSE(eight->isEqual(nine.get()));
}

TEST(NumberTest, IsEqualToNothingElse)
{
    const auto number = zef::makeRef<zef::Number>(0);
    const auto object = zef::makeRef<OtherObject>();

    EXPECT_FALSE(number->isEqual(nullptr));
    EXPECT_FALSE(number->isEqual(object.get()));
}

TEST(NumberTest, DescribesItselfByItsDigits)
{
    EXPECT_EQ(zef::makeRef<zef::Number>(-32)->description(), "-32");
    EXPECT_TRUE(zef::makeRef<zef::Number>(1)->isKindOfClass(zef::Number::classObject));
}

} // namespace

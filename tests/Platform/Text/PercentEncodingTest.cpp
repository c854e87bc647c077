// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Text/PercentEncoding.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string encoded(std::string_view bytes)
{
    std::string text;
    zef::appendPercentEncoded(text, bytes, zef::isUnreserved);
    return text;
}

TEST(PercentEncodingTest, LeavesUnreservedBytesAlone)
{
    EXPECT_EQ(encoded("AZaz09-._~"), "AZaz09-._~");
}

TEST(PercentEncodingTest, EscapesEveryOtherByteInUpperCase)
{
    using namespace std::string_literals;
    EXPECT_EQ(encoded("a/b %\n\xff\0"s), "a%2Fb%20%25%0A%FF%00");
}

TEST(PercentEncodingTest, LetsTheCallerSayWhatStays)
{
    std::string text = "file://";

    zef::appendPercentEncoded(text, "/a b", [](char byte) { return byte != ' '; });

    EXPECT_EQ(text, "file:///a%20b");
}

} // namespace

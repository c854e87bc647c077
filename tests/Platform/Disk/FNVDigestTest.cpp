// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FNVDigest.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

std::uint64_t digestOf(std::string_view text)
{
    return zef::fnvDigest(std::as_bytes(std::span(text)));
}

// The published values of the 64-bit FNV-1a.
TEST(FNVDigestTest, IsThePublishedOne)
{
    EXPECT_EQ(digestOf(""), 0xcbf29ce484222325u);
    EXPECT_EQ(digestOf("a"), 0xaf63dc4c8601ec8cu);
    EXPECT_EQ(digestOf("foobar"), 0x85944171f73967e8u);
}

} // namespace

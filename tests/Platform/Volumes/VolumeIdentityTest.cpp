// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentity.h"

#include <gtest/gtest.h>

namespace {

zef::VolumeIdentity makeIdentity(std::uint8_t uuid, std::uint64_t number, const char* mountPoint)
{
    zef::VolumeIdentity identity;
    identity.type = "ext4";
    identity.uuid[0] = uuid;
    identity.fileSystemID = number;
    identity.mountPoint = mountPoint;
    return identity;
}

TEST(VolumeIdentityTest, MatchesByTheUUIDAlone)
{
    EXPECT_TRUE(makeIdentity(1, 2, "/one").matches(makeIdentity(1, 3, "/other")));
    EXPECT_FALSE(makeIdentity(1, 2, "/one").matches(makeIdentity(4, 2, "/one")));
}

TEST(VolumeIdentityTest, MatchesByTheNumberWhereAUUIDIsMissing)
{
    EXPECT_TRUE(makeIdentity(0, 2, "/one").matches(makeIdentity(1, 2, "/other")));
    EXPECT_FALSE(makeIdentity(1, 2, "/one").matches(makeIdentity(0, 3, "/one")));
}

TEST(VolumeIdentityTest, MatchesByTheMountPointWhereNothingElseIsKnown)
{
    EXPECT_TRUE(makeIdentity(0, 0, "/one").matches(makeIdentity(1, 2, "/one")));
    EXPECT_FALSE(makeIdentity(1, 0, "/one").matches(makeIdentity(0, 2, "/other")));
}

TEST(VolumeIdentityTest, NeverMatchesAnotherType)
{
    auto other = makeIdentity(1, 2, "/one");
    other.type = "xfs";

    EXPECT_FALSE(makeIdentity(1, 2, "/one").matches(other));
}

} // namespace

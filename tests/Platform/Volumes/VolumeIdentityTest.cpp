// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentity.h"

#include <gtest/gtest.h>

namespace {

zef::VolumeIdentity makeEvidence(std::uint8_t uuid, std::uint64_t number, const char* mountPoint)
{
    zef::VolumeIdentity evidence;
    evidence.type = "ext4";
    evidence.uuid[0] = uuid;
    evidence.fileSystemID = number;
    evidence.mountPoint = mountPoint;
    return evidence;
}

TEST(VolumeIdentityTest, MatchesByTheUUIDAlone)
{
    EXPECT_TRUE(makeEvidence(1, 2, "/one").matches(makeEvidence(1, 3, "/other")));
    EXPECT_FALSE(makeEvidence(1, 2, "/one").matches(makeEvidence(4, 2, "/one")));
}

TEST(VolumeIdentityTest, MatchesByTheNumberWhereAUUIDIsMissing)
{
    EXPECT_TRUE(makeEvidence(0, 2, "/one").matches(makeEvidence(1, 2, "/other")));
    EXPECT_FALSE(makeEvidence(1, 2, "/one").matches(makeEvidence(0, 3, "/one")));
}

TEST(VolumeIdentityTest, MatchesByTheMountPointWhereNothingElseIsKnown)
{
    EXPECT_TRUE(makeEvidence(0, 0, "/one").matches(makeEvidence(1, 2, "/one")));
    EXPECT_FALSE(makeEvidence(1, 0, "/one").matches(makeEvidence(0, 2, "/other")));
}

TEST(VolumeIdentityTest, NeverMatchesAnotherType)
{
    auto other = makeEvidence(1, 2, "/one");
    other.type = "xfs";

    EXPECT_FALSE(makeEvidence(1, 2, "/one").matches(other));
}

} // namespace

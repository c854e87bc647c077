// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentityCache.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

class VolumeIdentityCacheTest : public testing::Test {
protected:
    VolumeIdentityCacheTest() { zef::Clock::replaceShared(&clock); }
    ~VolumeIdentityCacheTest() override { zef::Clock::replaceShared(nullptr); }

    static std::uint32_t deviceOf(const char* path)
    {
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::system().statLink(path, stat), 0);
        return stat.device;
    }

    SteppedClock clock;
    zef::VolumeIdentityCache evidences;
};

TEST_F(VolumeIdentityCacheTest, TellsTheTypeOfTheRootAsTheMountTableHasIt)
{
    const auto mounts = zef::readMounts();
    const auto root = std::find_if(
        mounts.rbegin(), mounts.rend(), [](const auto& mount) { return mount.folder == "/"; });
    ASSERT_NE(root, mounts.rend());
    zef::VolumeIdentity evidence;

    ASSERT_TRUE(evidences.evidence("/", deviceOf("/"), root->id, evidence));
    EXPECT_EQ(evidence.type, root->type);
    EXPECT_EQ(evidence.mountPoint, "/");
    EXPECT_TRUE(evidence.matches(evidence));
}

TEST_F(VolumeIdentityCacheTest, KnowsNothingOfAFolderThatNothingIsMountedOn)
{
    zef::VolumeIdentity evidence;

    EXPECT_FALSE(evidences.evidence("/proc/self", deviceOf("/proc"), 0, evidence));
}

TEST_F(VolumeIdentityCacheTest, KeepsANumberForASecond)
{
    const auto device = deviceOf("/");
    std::uint64_t number = 0;
    EXPECT_FALSE(evidences.findFileSystemID(device, number));
    const auto asked = evidences.fileSystemID("/", device);

    ASSERT_TRUE(evidences.findFileSystemID(device, number));
    EXPECT_EQ(number, asked);
    clock.advance(1);
    EXPECT_FALSE(evidences.findFileSystemID(device, number));
}

TEST_F(VolumeIdentityCacheTest, KnowsWhichNumbersLast)
{
    EXPECT_TRUE(evidences.hasLastingNumbers("/proc", deviceOf("/proc")));
}

TEST_F(VolumeIdentityCacheTest, HasNoNumberForAPlaceThatIsMissing)
{
    EXPECT_EQ(evidences.fileSystemID("/proc/missing", 12345), 0u);
}

} // namespace

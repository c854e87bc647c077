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
    zef::VolumeIdentityCache identities;
};

TEST_F(VolumeIdentityCacheTest, TellsTheTypeOfTheRootAsTheMountTableHasIt)
{
    const auto mounts = zef::readMounts();
    const auto root = std::find_if(
        mounts.rbegin(), mounts.rend(), [](const auto& mount) { return mount.folder == "/"; });
    ASSERT_NE(root, mounts.rend());
    const auto identity = identities.identity("/", deviceOf("/"), root->id);

    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->type, root->type);
    EXPECT_EQ(identity->mountPoint, "/");
    EXPECT_TRUE(identity->matches(*identity));
}

TEST_F(VolumeIdentityCacheTest, KnowsNothingOfAFolderThatNothingIsMountedOn)
{
    EXPECT_FALSE(identities.identity("/proc/self", deviceOf("/proc"), 0));
}

TEST_F(VolumeIdentityCacheTest, KeepsANumberForASecond)
{
    const auto device = deviceOf("/");
    EXPECT_FALSE(identities.knownFileSystemID(device));
    const auto asked = identities.fileSystemID("/", device);

    EXPECT_EQ(identities.knownFileSystemID(device), asked);
    clock.advance(1);
    EXPECT_FALSE(identities.knownFileSystemID(device));
}

TEST_F(VolumeIdentityCacheTest, KnowsWhichNumbersLast)
{
    EXPECT_TRUE(identities.hasLastingNumbers("/proc", deviceOf("/proc")));
}

TEST_F(VolumeIdentityCacheTest, HasNoNumberForAPlaceThatIsMissing)
{
    EXPECT_EQ(identities.fileSystemID("/proc/missing", 12345), 0u);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/DeviceKindCache.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using zef::DeviceKind;

class DeviceKindCacheTest : public testing::Test {
protected:
    DeviceKindCacheTest() { zef::Clock::replaceShared(&clock); }
    ~DeviceKindCacheTest() override { zef::Clock::replaceShared(nullptr); }

    static std::uint32_t deviceOf(const std::string& path)
    {
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::shared().statLink(path.c_str(), stat), 0) << path;
        return stat.device;
    }

    DeviceKind kindOf(const std::string& path) { return kinds.kind(deviceOf(path), path.c_str()); }

    TemporaryFolder folder;
    SteppedClock clock;
    zef::DeviceKindCache kinds;
};

TEST_F(DeviceKindCacheTest, TellsMadeUpFilesFromOthers)
{
    EXPECT_EQ(kindOf(folder.path()), DeviceKind::local);
    EXPECT_EQ(kindOf("/proc/version"), DeviceKind::madeUp);
    EXPECT_EQ(kindOf("/sys"), DeviceKind::madeUp);
}

TEST_F(DeviceKindCacheTest, DoesNotFollowALinkToAnotherDevice)
{
    folder.symlink("/proc/version", "link");

    EXPECT_EQ(kindOf(folder.path("link")), DeviceKind::local);
}

TEST_F(DeviceKindCacheTest, DoesNotKnowADeviceThatThePathIsNotOn)
{
    EXPECT_EQ(kinds.kind(deviceOf("/proc"), folder.path().c_str()), DeviceKind::unknown);
    EXPECT_EQ(
        kinds.kind(deviceOf(folder.path()), folder.path("missing").c_str()), DeviceKind::unknown);
}

TEST_F(DeviceKindCacheTest, LooksAtADeviceOnceASecond)
{
    const auto device = deviceOf(folder.path());
    const auto missing = folder.path("missing");
    EXPECT_EQ(kindOf(folder.path()), DeviceKind::local);

    clock.advance(0.9);
    EXPECT_EQ(kinds.kind(device, missing.c_str()), DeviceKind::local) << "no look";
    clock.advance(0.2);
    EXPECT_EQ(kinds.kind(device, missing.c_str()), DeviceKind::unknown) << "a look that failed";
}

TEST_F(DeviceKindCacheTest, LooksAgainAfterForgetting)
{
    const auto device = deviceOf(folder.path());
    EXPECT_EQ(kindOf(folder.path()), DeviceKind::local);

    kinds.forget();

    EXPECT_EQ(kinds.kind(device, folder.path("missing").c_str()), DeviceKind::unknown);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/AutomountPoints.h"

#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

class AutomountPointsTest : public testing::Test {
protected:
    AutomountPointsTest() { zef::Clock::replaceShared(&clock); }
    ~AutomountPointsTest() override { zef::Clock::replaceShared(nullptr); }

    static zef::Mount mount(const char* folder, const char* type)
    {
        zef::Mount result;
        result.folder = folder;
        result.type = type;
        return result;
    }

    SteppedClock clock;
    std::vector<zef::Mount> mounts{ mount("/", "ext4"), mount("/net", "autofs") };
    int readCount = 0;
    zef::AutomountPoints points{ [this] {
        ++readCount;
        return mounts;
    } };
};

TEST_F(AutomountPointsTest, AreAboveWhatIsNotMountedYet)
{
    EXPECT_TRUE(points.areAbove("/net/host"));
    EXPECT_TRUE(points.areAbove("/net/host/file"));
}

TEST_F(AutomountPointsTest, AreNotAboveThemselvesNorWhatLiesBesideThem)
{
    for (const auto* path : { "/", "/net", "/network", "/network/file", "/home/net/file", "" })
        EXPECT_FALSE(points.areAbove(path)) << path;
}

TEST_F(AutomountPointsTest, AreNotAboveWhatIsMounted)
{
    mounts.push_back(mount("/net/host", "nfs4"));

    EXPECT_FALSE(points.areAbove("/net/host"));
    EXPECT_FALSE(points.areAbove("/net/host/file"));
    EXPECT_TRUE(points.areAbove("/net/other"));
    EXPECT_TRUE(points.areAbove("/net/hostile"));
}

TEST_F(AutomountPointsTest, AreCoveredByWhatIsMountedInTheSamePlace)
{
    mounts.push_back(mount("/data", "autofs"));
    EXPECT_TRUE(points.areAbove("/data/file"));

    mounts.push_back(mount("/data", "nfs4"));

    EXPECT_FALSE(points.areAbove("/data/file"));
}

TEST_F(AutomountPointsTest, MayBeBelowAnotherMount)
{
    mounts.push_back(mount("/net/host", "nfs4"));
    mounts.push_back(mount("/net/host/inner", "autofs"));

    EXPECT_TRUE(points.areAbove("/net/host/inner/file"));
    EXPECT_FALSE(points.areAbove("/net/host/inner"));
}

TEST_F(AutomountPointsTest, MayBeTheRoot)
{
    mounts = { mount("/", "autofs") };

    EXPECT_TRUE(points.areAbove("/file"));
    EXPECT_FALSE(points.areAbove("/"));
}

TEST_F(AutomountPointsTest, AreAskedForOnceASecondForOtherPaths)
{
    for (int round = 0; round < 10; ++round)
        points.areAbove("/home/file");
    EXPECT_EQ(readCount, 1);

    mounts.push_back(mount("/home", "autofs"));
    clock.advance(1.5);

    EXPECT_TRUE(points.areAbove("/home/file"));
    EXPECT_EQ(readCount, 3);
}

TEST_F(AutomountPointsTest, AreNowhereWhenTheSystemDoesNotTell)
{
    mounts.clear();

    EXPECT_FALSE(points.areAbove("/net/host"));
}

} // namespace

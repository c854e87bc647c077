// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/sysmacros.h>

namespace {

TEST(MountTableTest, ReadsWhereWhatIsMounted)
{
    const auto mounts = zef::parseMounts("27 1 254:16 / / rw,relatime - ext4 /dev/vda rw\n"
                                         "30 27 0:27 /sub /data rw shared:1 master:2 - btrfs x rw");

    ASSERT_EQ(mounts.size(), 2u);
    EXPECT_EQ(mounts[0].id, 27u);
    EXPECT_EQ(mounts[0].device, makedev(254, 16));
    EXPECT_EQ(mounts[0].folder, "/");
    EXPECT_EQ(mounts[0].type, "ext4");
    EXPECT_EQ(mounts[1].folder, "/data");
    EXPECT_EQ(mounts[1].type, "btrfs");
}

TEST(MountTableTest, DecodesTheEscapesOfPaths)
{
    const auto mounts = zef::parseMounts(
        "1 0 0:1 / /a\\040b\\012\\134c\\9\\04 rw - tmpfs none rw\n");

    ASSERT_EQ(mounts.size(), 1u);
    EXPECT_EQ(mounts[0].folder, "/a b\n\\c\\9\\04");
}

TEST(MountTableTest, LeavesOutLinesOfAnotherForm)
{
    const auto mounts = zef::parseMounts("\n"
                                         "27\n"
                                         "x 1 254:0 / / rw - ext4 /dev/vda rw\n"
                                         "27 1 254 / / rw - ext4 /dev/vda rw\n"
                                         "27 1 254:x / / rw - ext4 /dev/vda rw\n"
                                         "27 1 254:0 / / rw ext4 /dev/vda rw\n"
                                         "27 1 254:0 / / rw -\n"
                                         "28 1 254:0 / / rw - ext4 /dev/vda rw\n");

    ASSERT_EQ(mounts.size(), 1u);
    EXPECT_EQ(mounts[0].id, 28u);
}

TEST(MountTableTest, KnowsWhatLiesBelowAPath)
{
    const auto isBelowMedia = [](std::string folder) {
        return zef::Mount{ .folder = std::move(folder), .type = {} }.isBelow("/media");
    };

    EXPECT_TRUE(isBelowMedia("/media"));
    EXPECT_TRUE(isBelowMedia("/media/user/stick"));
    EXPECT_FALSE(isBelowMedia("/mediation"));
    EXPECT_FALSE(isBelowMedia("/"));
}

TEST(MountTableTest, KnowsTheMountsOfThisSystem)
{
    const auto mounts = zef::readMounts();

    EXPECT_TRUE(std::any_of(
        mounts.begin(), mounts.end(), [](const auto& mount) { return mount.folder == "/"; }));
}

} // namespace

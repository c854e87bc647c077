// SPDX-License-Identifier: MIT
#include "tests/support/TrashVolumesFixture.h"

#include <cerrno>
#include <fstream>

#include <sys/mount.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using zef::TrashOutcome;

class TrashVolumesTest : public TrashVolumesFixture {
protected:
    void giveToAnotherUser(const std::string& name)
    {
        ASSERT_EQ(::chown(folder.path(name).c_str(), 65534, 65534), 0);
    }
};

TEST_F(TrashVolumesTest, AFileGoesToTheTrashOfItsVolumeWithARelativePath)
{
    run([this](Mounts) {
        folder.makeFolder("volume/d");
        folder.write("volume/d/a b");

        expectMoved({ "volume/d/a b" });
        EXPECT_THAT(namesIn(ownTrash + "/files"), ElementsAre("a b"));
        EXPECT_THAT(folder.contents(ownTrash + "/info/a b.trashinfo"),
            StartsWith("[Trash Info]\nPath=d/a%20b\n"));
        EXPECT_FALSE(folder.exists("data"));
    });
}

TEST_F(TrashVolumesTest, FilesOfTwoVolumesGoInOneRequest)
{
    run([this](Mounts) {
        folder.write("volume/a");
        folder.write("b");

        expectMoved({ "volume/a", "b" });
        EXPECT_THAT(namesIn(ownTrash + "/files"), ElementsAre("a"));
        EXPECT_THAT(trashed(), ElementsAre("b"));
    });
}

TEST_F(TrashVolumesTest, ARefusalOnOneVolumeKeepsTheFilesOfAnother)
{
    run([this](Mounts) {
        folder.write("b");
        folder.write("volume/a");
        folder.write(ownTrash); // not a folder

        expectRefused({ "b", "volume/a" }, ENOTDIR);
        EXPECT_TRUE(folder.exists("volume/a"));
    });
}

TEST_F(TrashVolumesTest, TheAdministratorsStickyFolderComesFirst)
{
    run([this](Mounts) {
        makeFolder("volume/.Trash", 01777);
        folder.write("volume/a");

        expectMoved({ "volume/a" });
        EXPECT_THAT(namesIn(sharedTrash + "/files"), ElementsAre("a"));
        EXPECT_THAT(folder.contents(sharedTrash + "/info/a.trashinfo"),
            StartsWith("[Trash Info]\nPath=a\n"));
        EXPECT_FALSE(folder.exists(ownTrash));
    });
}

TEST_F(TrashVolumesTest, ASharedFolderThatIsNotStickyIsNotUsed)
{
    run([this](Mounts) {
        makeFolder("volume/.Trash", 0777);
        folder.write("volume/a");

        expectMoved({ "volume/a" });
        EXPECT_THAT(namesIn(ownTrash + "/files"), ElementsAre("a"));
        EXPECT_THAT(namesIn("volume/.Trash"), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, ASharedFolderThatIsALinkIsNotUsed)
{
    run([this](Mounts) {
        makeFolder("volume/planted", 01777);
        folder.symlink("planted", "volume/.Trash");
        folder.write("volume/a");

        expectMoved({ "volume/a" });
        EXPECT_THAT(namesIn(ownTrash + "/files"), ElementsAre("a"));
        EXPECT_THAT(namesIn("volume/planted"), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, APlantedLinkInTheSharedFolderIsNotFollowed)
{
    run([this](Mounts) {
        makeFolder("volume/.Trash", 01777);
        folder.makeFolder("volume/planted");
        folder.symlink("../planted", sharedTrash);
        folder.write("volume/a");

        expectMoved({ "volume/a" });
        EXPECT_THAT(namesIn(ownTrash + "/files"), ElementsAre("a"));
        EXPECT_THAT(namesIn("volume/planted"), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, AFolderOfAnotherUserInTheSharedFolderIsNotUsed)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of another user";
    run([this](Mounts) {
        makeFolder("volume/.Trash", 01777);
        folder.makeFolder(sharedTrash);
        giveToAnotherUser(sharedTrash);
        folder.write("volume/a");

        expectMoved({ "volume/a" });
        EXPECT_THAT(namesIn(ownTrash + "/files"), ElementsAre("a"));
        EXPECT_THAT(namesIn(sharedTrash), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, APlantedLinkInTheTrashesPlaceIsRefused)
{
    run([this](Mounts) {
        folder.makeFolder("volume/planted");
        folder.symlink("planted", ownTrash);
        folder.write("volume/a");

        expectRefused({ "volume/a" }, ENOTDIR);
        EXPECT_THAT(namesIn("volume/planted"), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, AFolderOfAnotherUserInTheTrashesPlaceIsRefused)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of another user";
    run([this](Mounts) {
        folder.makeFolder(ownTrash);
        giveToAnotherUser(ownTrash);
        folder.write("volume/a");

        expectRefused({ "volume/a" }, EPERM);
        EXPECT_THAT(namesIn(ownTrash), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, AVolumesTrashesThemselvesAreRefused)
{
    run([this](Mounts) {
        folder.write("volume/a");
        expectMoved({ "volume/a" });
        folder.makeFolder("volume/.Trash");

        expectRefused({ ownTrash }, EBUSY);
        expectRefused({ "volume/.Trash" }, EBUSY);
        expectRefused({ ownTrash + "/files" }, EEXIST);
    });
}

TEST_F(TrashVolumesTest, AMountPointIsRefused)
{
    run([this](Mounts) { expectRefused({ "other", "volume" }, EBUSY); });
}

TEST_F(TrashVolumesTest, AFolderWithAMountInItIsRefused)
{
    run([this](Mounts mounts) {
        folder.makeFolder("volume/d");
        folder.makeFolder("volume/d/e");
        ASSERT_TRUE(mounts.mountMemory(folder.path("volume/d/e")));

        expectRefused({ "volume/d" }, EBUSY);
    });
}

TEST_F(TrashVolumesTest, AReadOnlyVolumeIsRefused)
{
    run([this](Mounts) {
        folder.write("b");
        folder.write("volume/a");
        const auto readOnly = MS_REMOUNT | MS_BIND | MS_RDONLY;
        ASSERT_EQ(::mount(nullptr, folder.path("volume").c_str(), nullptr, readOnly, nullptr), 0);

        expectRefused({ "b", "volume/a" }, EROFS);
    });
}

TEST_F(TrashVolumesTest, AFileBelowABindMountGoesToTheTrashOfThatMount)
{
    run([this](Mounts) {
        folder.write("home file");
        folder.makeFolder("sub");
        folder.write("sub/a");
        ASSERT_EQ(::mount(folder.path("sub").c_str(), folder.path("other").c_str(), nullptr,
                      MS_BIND, nullptr),
            0);

        expectMoved({ "other/a", "home file" });
        EXPECT_THAT(namesIn("other/" + own + "/files"), ElementsAre("a"));
        EXPECT_THAT(trashed(), ElementsAre("home file"));
    });
}

TEST_F(TrashVolumesTest, AFolderMountedOverTheTrashIsNotMovedInto)
{
    run([this](Mounts mounts) {
        makeFolder(ownTrash, 0755);
        makeFolder(ownTrash + "/files", 0755);
        folder.write("volume/a");
        ASSERT_TRUE(mounts.mountMemory(folder.path(ownTrash + "/files")));

        expectRefused({ "volume/a" }, EXDEV);
    });
}

TEST_F(TrashVolumesTest, AFullDiskFailsTheMoveAndLeavesNothingBehind)
{
    run([this](Mounts) {
        // Room for the volume's root, three files, the trash and one record.
        ASSERT_EQ(::mount("memory", folder.path("other").c_str(), "tmpfs", 0, "nr_inodes=8"), 0);
        const Names names{ "other/a", "other/b", "other/c" };
        for (const auto& name : names)
            folder.write(name);

        EXPECT_EQ(trash(names), TrashOutcome::failed);
        EXPECT_EQ(refusal.error, ENOSPC) << refusal.reason;
        EXPECT_EQ(refusal.index, 1u);
        EXPECT_TRUE(refusal.isUndone);
        EXPECT_THAT(namesIn("other"), ElementsAre(own, "a", "b", "c"));
        EXPECT_THAT(namesIn("other/" + own + "/info"), IsEmpty());
        EXPECT_THAT(namesIn("other/" + own + "/files"), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, AnInfoFileThatFindsNoRoomIsRemoved)
{
    run([this](Mounts) {
        ASSERT_EQ(::mount("memory", folder.path("other").c_str(), "tmpfs", 0, "size=16k"), 0);
        folder.write("other/a", "");
        // As much of it as there is room for.
        std::ofstream(folder.path("other/filler")) << std::string(65536, 'x');

        EXPECT_EQ(trash(Names{ "other/a" }), TrashOutcome::failed);
        EXPECT_EQ(refusal.error, ENOSPC) << refusal.reason;
        EXPECT_TRUE(folder.exists("other/a"));
        EXPECT_THAT(namesIn("other/" + own + "/info"), IsEmpty());
    });
}

TEST_F(TrashVolumesTest, OnAnOverlayAFileOfTheLowerLayerGoes)
{
    run([this](Mounts mounts) {
        const auto layer = [this](const char* name) {
            folder.makeFolder("volume/" + std::string(name));
            return folder.path("volume/" + std::string(name));
        };
        const auto lower = layer("lower");
        folder.write("volume/lower/a", "below");
        if (!mounts.mountOverlay(lower, layer("upper"), layer("work"), layer("merged")))
            GTEST_SKIP() << "no overlays";

        expectMoved({ "volume/merged/a" });
        EXPECT_THAT(namesIn("volume/merged/" + own + "/files"), ElementsAre("a"));
        EXPECT_FALSE(folder.exists("volume/merged/a"));
    });
}

} // namespace

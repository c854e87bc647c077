// SPDX-License-Identifier: MIT
#include "tests/support/TrashVolumesFixture.h"

#include <cerrno>

#include <sys/mount.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using zef::TrashOutcome;

class TrashVolumesTest : public TrashVolumesFixture { };

TEST_F(TrashVolumesTest, AFileGoesToTheTrashOfItsVolumeWithARelativePath)
{
    run([this](Mounts) {
        fs::create_directory(volume("d"));
        write(volume("d/a b"));
        return trash({ volume("d/a b") }) == TrashOutcome::moved
            && exists(volume(own + "/files/a b")) && isRecorded(own, "a b", "d/a%20b")
            && !exists(path("data"));
    });
}

TEST_F(TrashVolumesTest, FilesOfTwoVolumesGoInOneRequest)
{
    run([this](Mounts) {
        write(volume("a"));
        write(path("b"));
        return trash({ volume("a"), path("b") }) == TrashOutcome::moved
            && exists(volume(own + "/files/a")) && exists(path("data/Trash/files/b"));
    });
}

TEST_F(TrashVolumesTest, ARefusalOnOneVolumeKeepsTheFilesOfAnother)
{
    run([this](Mounts) {
        write(path("b"));
        write(volume("a"));
        write(volume(own)); // no folder
        return isRefused({ path("b"), volume("a") }, ENOTDIR) && exists(volume("a"));
    });
}

TEST_F(TrashVolumesTest, TheAdministratorsStickyFolderComesFirst)
{
    run([this](Mounts) {
        fs::create_directory(volume(".Trash"));
        ::chmod(volume(".Trash").c_str(), 01777);
        write(volume("a"));
        return trash({ volume("a") }) == TrashOutcome::moved && exists(volume(shared + "/files/a"))
            && isRecorded(shared, "a", "a") && !exists(volume(own));
    });
}

TEST_F(TrashVolumesTest, ASharedFolderThatIsNotStickyIsNotUsed)
{
    run([this](Mounts) {
        fs::create_directory(volume(".Trash"));
        ::chmod(volume(".Trash").c_str(), 0777);
        write(volume("a"));
        return trash({ volume("a") }) == TrashOutcome::moved && exists(volume(own + "/files/a"))
            && fs::is_empty(volume(".Trash"));
    });
}

TEST_F(TrashVolumesTest, ASharedFolderThatIsALinkIsNotUsed)
{
    run([this](Mounts) {
        fs::create_directory(volume("planted"));
        ::chmod(volume("planted").c_str(), 01777);
        fs::create_symlink("planted", volume(".Trash"));
        write(volume("a"));
        return trash({ volume("a") }) == TrashOutcome::moved && exists(volume(own + "/files/a"))
            && fs::is_empty(volume("planted"));
    });
}

TEST_F(TrashVolumesTest, APlantedLinkInTheSharedFolderIsNotFollowed)
{
    run([this](Mounts) {
        fs::create_directory(volume(".Trash"));
        ::chmod(volume(".Trash").c_str(), 01777);
        fs::create_directory(volume("planted"));
        fs::create_symlink("../planted", volume(shared));
        write(volume("a"));
        return trash({ volume("a") }) == TrashOutcome::moved && exists(volume(own + "/files/a"))
            && fs::is_empty(volume("planted"));
    });
}

TEST_F(TrashVolumesTest, AFolderOfAnotherUserInTheSharedFolderIsNotUsed)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of another user";
    run([this](Mounts) {
        fs::create_directory(volume(".Trash"));
        ::chmod(volume(".Trash").c_str(), 01777);
        fs::create_directory(volume(shared));
        if (::chown(volume(shared).c_str(), 65534, 65534) != 0)
            return false;
        write(volume("a"));
        return trash({ volume("a") }) == TrashOutcome::moved && exists(volume(own + "/files/a"))
            && fs::is_empty(volume(shared));
    });
}

TEST_F(TrashVolumesTest, APlantedLinkInTheTrashesPlaceIsRefused)
{
    run([this](Mounts) {
        fs::create_directory(volume("planted"));
        fs::create_symlink("planted", volume(own));
        write(volume("a"));
        return isRefused({ volume("a") }, ENOTDIR) && fs::is_empty(volume("planted"));
    });
}

TEST_F(TrashVolumesTest, AFolderOfAnotherUserInTheTrashesPlaceIsRefused)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make folders of another user";
    run([this](Mounts) {
        fs::create_directory(volume(own));
        if (::chown(volume(own).c_str(), 65534, 65534) != 0)
            return false;
        write(volume("a"));
        return isRefused({ volume("a") }, EPERM) && fs::is_empty(volume(own));
    });
}

TEST_F(TrashVolumesTest, AVolumesTrashesThemselvesAreRefused)
{
    run([this](Mounts) {
        write(volume("a"));
        trash({ volume("a") });
        fs::create_directory(volume(".Trash"));
        return isRefused({ volume(own) }, EBUSY) && isRefused({ volume(".Trash") }, EBUSY)
            && isRefused({ volume(own + "/files") }, EEXIST);
    });
}

TEST_F(TrashVolumesTest, AMountPointIsRefused)
{
    run([this](Mounts) { return isRefused({ path("other"), path("volume") }, EBUSY); });
}

TEST_F(TrashVolumesTest, AFolderWithAMountInItIsRefused)
{
    run([this](Mounts mounts) {
        fs::create_directories(volume("d/e"));
        return mounts.mountMemory(volume("d/e")) && isRefused({ volume("d") }, EBUSY);
    });
}

TEST_F(TrashVolumesTest, AReadOnlyVolumeIsRefused)
{
    run([this](Mounts) {
        write(path("b"));
        write(volume("a"));
        return ::mount(
                   nullptr, volume("").c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr)
            == 0
            && isRefused({ path("b"), volume("a") }, EROFS);
    });
}

TEST_F(TrashVolumesTest, AFileBelowABindMountGoesToTheTrashOfThatMount)
{
    run([this](Mounts) {
        write(path("home file"));
        fs::create_directory(path("sub"));
        write(path("sub/a"));
        if (::mount(path("sub").c_str(), path("other").c_str(), nullptr, MS_BIND, nullptr) != 0)
            return false;
        return trash({ path("other/a"), path("home file") }) == TrashOutcome::moved
            && exists(path("other/" + own + "/files/a"))
            && exists(path("data/Trash/files/home file"));
    });
}

TEST_F(TrashVolumesTest, AFolderMountedOverTheTrashIsNotMovedInto)
{
    run([this](Mounts mounts) {
        fs::create_directories(volume(own + "/files"));
        write(volume("a"));
        return mounts.mountMemory(volume(own + "/files")) && isRefused({ volume("a") }, EXDEV);
    });
}

TEST_F(TrashVolumesTest, AFullDiskFailsTheMoveAndLeavesNothingBehind)
{
    run([this](Mounts) {
        // Room for the volume's root, three files, the trash and one record.
        if (::mount("memory", path("other").c_str(), "tmpfs", 0, "nr_inodes=8") != 0)
            return false;
        const std::vector<std::string> files{ path("other/a"), path("other/b"), path("other/c") };
        for (const auto& file : files)
            write(file);
        return trash(files) == TrashOutcome::failed && refusal.error == ENOSPC && refusal.index == 1
            && refusal.isUndone && exists(files[0]) && exists(files[2])
            && fs::is_empty(path("other/" + own + "/info"))
            && fs::is_empty(path("other/" + own + "/files"));
    });
}

TEST_F(TrashVolumesTest, AnInfoFileThatFindsNoRoomIsRemoved)
{
    run([this](Mounts) {
        if (::mount("memory", path("other").c_str(), "tmpfs", 0, "size=16k") != 0)
            return false;
        write(path("other/a"), "");
        write(path("other/filler"), std::string(65536, 'x'));
        return trash({ path("other/a") }) == TrashOutcome::failed && refusal.error == ENOSPC
            && exists(path("other/a")) && fs::is_empty(path("other/" + own + "/info"));
    });
}

TEST_F(TrashVolumesTest, OnAnOverlayAFileOfTheLowerLayerGoes)
{
    run([this](Mounts mounts) {
        for (const auto* name : { "lower", "upper", "work", "merged" })
            fs::create_directory(volume(name));
        write(volume("lower/a"), "below");
        if (!mounts.mountOverlay(
                volume("lower"), volume("upper"), volume("work"), volume("merged")))
            ::_exit(impossible);
        return trash({ volume("merged/a") }) == TrashOutcome::moved
            && exists(volume("merged/" + own + "/files/a")) && !exists(volume("merged/a"));
    });
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateMounts.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <string>

#include <sys/mount.h>
#include <sys/stat.h>

namespace {

constexpr int passed = 0;
constexpr int failed = 1;
constexpr int impossible = 2;

// Each test works with mounts of its own in a child process, which says how it went.
class LinuxAliasDataMountsTest : public testing::Test {
protected:
    LinuxAliasDataMountsTest()
    {
        folder.makeFolder("one");
        folder.makeFolder("two");
    }

    void run(const std::function<bool(PrivateMounts&)>& work)
    {
        const int result = resultInChildProcess([&] {
            PrivateMounts mounts;
            if (!mounts || !mounts.mountMemory(folder.path("one")))
                return impossible;
            std::ofstream(folder.path("one/file")) << "text";
            return work(mounts) ? passed : failed;
        });
        if (result == impossible)
            GTEST_SKIP() << "no mounts to be had";
        EXPECT_EQ(result, passed);
    }

    zef::AliasData::Bytes aliasOf(std::string_view name)
    {
        zef::AliasData::Bytes bytes;
        zef::Stat stat;
        const auto url = folder.url(name);
        if (zef::FileSystem::system().statLink(url.path().c_str(), stat) == 0)
            std::ignore = zef::LinuxAliasData().make(zef::FSRef(stat), url, bytes);
        return bytes;
    }

    // Empty when the data lead nowhere.
    static std::string resolve(const zef::AliasData::Bytes& bytes)
    {
        zef::FSRef ref;
        zef::FileURL url;
        return zef::LinuxAliasData().resolve(bytes, ref, url) == zef::FileError::none
            ? url.path()
            : std::string();
    }

    // Mounts the volume that is at `one` at `two` instead.
    bool moveVolume(PrivateMounts& mounts)
    {
        return ::mount(folder.path("one").c_str(), folder.path("two").c_str(), nullptr, MS_BIND,
                   nullptr)
            == 0
            && mounts.unmount(folder.path("one"));
    }

    TemporaryFolder folder;
};

TEST_F(LinuxAliasDataMountsTest, FindsAFileOnAVolumeThatIsMountedElsewhere)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        return moveVolume(mounts) && resolve(alias) == folder.path("two/file");
    });
}

TEST_F(LinuxAliasDataMountsTest, FindsARenamedFileOnAVolumeThatIsMountedElsewhere)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        if (!moveVolume(mounts))
            return false;
        folder.rename("two/file", "two/renamed");
        return resolve(alias) == folder.path("two/renamed");
    });
}

TEST_F(LinuxAliasDataMountsTest, FindsTheFolderThatAVolumeIsMountedOnWhereverThatIs)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one");
        return resolve(alias) == folder.path("one") && moveVolume(mounts)
            && resolve(alias) == folder.path("two");
    });
}

TEST_F(LinuxAliasDataMountsTest, FindsNothingWhileTheVolumeIsNotMounted)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        return !alias.empty() && mounts.unmount(folder.path("one")) && resolve(alias).empty();
    });
}

TEST_F(LinuxAliasDataMountsTest, DoesNotTakeAnotherVolumeForItsOwn)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        if (!mounts.unmount(folder.path("one")) || !mounts.mountMemory(folder.path("one")))
            return false;
        // The first file of a new file system in memory has the same number.
        std::ofstream(folder.path("one/file")) << "other";
        return resolve(alias).empty();
    });
}

TEST_F(LinuxAliasDataMountsTest, LeavesVolumesAloneThatAreMountedWithinItsOwn)
{
    run([this](PrivateMounts& mounts) {
        ::mkdir(folder.path("one/folder").c_str(), 0700);
        ::rename(folder.path("one/file").c_str(), folder.path("one/folder/file").c_str());
        const auto alias = aliasOf("one/folder/file");
        return !alias.empty() && mounts.mountMemory(folder.path("one/folder"))
            && resolve(alias).empty();
    });
}

} // namespace

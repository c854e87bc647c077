// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/PrivateMounts.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <sys/mount.h>

namespace {

// Each test works in a child process with mounts of its own: a volume at "one" that holds "file".
class LinuxAliasDataMountsTest : public testing::Test {
protected:
    LinuxAliasDataMountsTest()
    {
        folder.makeFolder("one");
        folder.makeFolder("two");
    }

    void run(const std::function<void(PrivateMounts&)>& work)
    {
        runWithVolume(folder.path("one"), [&](PrivateMounts& mounts) {
            folder.write("one/file");
            work(mounts);
        });
    }

    zef::AliasData::Bytes aliasOf(std::string_view name)
    {
        zef::Stat stat;
        const auto url = folder.url(name);
        if (zef::FileSystem::system().statLink(url.path().c_str(), stat) != 0)
            return {};
        auto bytes = zef::LinuxAliasData().make(zef::FSRef(stat), url);
        return bytes ? *std::move(bytes) : zef::AliasData::Bytes();
    }

    // Empty if the data lead nowhere.
    static std::string resolve(const zef::AliasData::Bytes& bytes)
    {
        const auto target = zef::LinuxAliasData().resolve(bytes);
        return target ? target->url.path() : std::string();
    }

    // Mounts the volume that is at "one" at "two" instead.
    void moveVolume(PrivateMounts& mounts)
    {
        const auto one = folder.path("one");
        ASSERT_EQ(::mount(one.c_str(), folder.path("two").c_str(), nullptr, MS_BIND, nullptr), 0);
        ASSERT_TRUE(mounts.unmount(one));
    }

    TemporaryFolder folder;
};

TEST_F(LinuxAliasDataMountsTest, FindsAFileOnAVolumeThatIsMountedElsewhere)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        moveVolume(mounts);

        EXPECT_EQ(resolve(alias), folder.path("two/file"));
    });
}

TEST_F(LinuxAliasDataMountsTest, FindsARenamedFileOnAVolumeThatIsMountedElsewhere)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        moveVolume(mounts);
        folder.rename("two/file", "two/renamed");

        EXPECT_EQ(resolve(alias), folder.path("two/renamed"));
    });
}

TEST_F(LinuxAliasDataMountsTest, FindsTheFolderThatAVolumeIsMountedOnWhereverThatIs)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one");

        EXPECT_EQ(resolve(alias), folder.path("one"));
        moveVolume(mounts);
        EXPECT_EQ(resolve(alias), folder.path("two"));
    });
}

TEST_F(LinuxAliasDataMountsTest, FindsNothingWhileTheVolumeIsNotMounted)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        ASSERT_TRUE(mounts.unmount(folder.path("one")));

        EXPECT_FALSE(alias.empty());
        EXPECT_EQ(resolve(alias), "");
    });
}

TEST_F(LinuxAliasDataMountsTest, DoesNotTakeAnotherVolumeForItsOwn)
{
    run([this](PrivateMounts& mounts) {
        const auto alias = aliasOf("one/file");
        ASSERT_TRUE(mounts.unmount(folder.path("one")));
        ASSERT_TRUE(mounts.mountMemory(folder.path("one")));
        // The first file of a new file system in memory has the same number.
        folder.write("one/file", "other");

        EXPECT_EQ(resolve(alias), "");
    });
}

TEST_F(LinuxAliasDataMountsTest, LeavesVolumesAloneThatAreMountedWithinItsOwn)
{
    run([this](PrivateMounts& mounts) {
        folder.makeFolder("one/folder");
        folder.rename("one/file", "one/folder/file");
        const auto alias = aliasOf("one/folder/file");
        ASSERT_TRUE(mounts.mountMemory(folder.path("one/folder")));

        EXPECT_FALSE(alias.empty());
        EXPECT_EQ(resolve(alias), "");
    });
}

} // namespace

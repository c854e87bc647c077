// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/PrivateMounts.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Each test works in a child process that has mounts of its own.
class LocatorMountsTest : public testing::Test {
protected:
    LocatorMountsTest() { folder.makeFolder("volume"); }

    template <typename Work> void run(Work&& work)
    {
        runWithVolume(folder.path("volume"), [&](PrivateMounts& mounts) {
            zef::LinuxLocator locator;
            locator.setDescriptorPolicy(zef::DescriptorPolicy::always);
            work(mounts, locator);
        });
    }

    static zef::FSRef retain(zef::Locator& locator, const zef::FileURL& url)
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(url.path().c_str(), stat);
        zef::FSRef ref(stat);
        locator.retain(ref, url);
        return ref;
    }

    static std::int64_t birthTime(const zef::FileURL& url)
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(url.path().c_str(), stat);
        return stat.birthTime;
    }

    TemporaryFolder folder;
};

TEST_F(LocatorMountsTest, LetsAVolumeGoThatIsToBeUnmounted)
{
    run([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto volume = folder.path("volume");
        retain(locator, folder.write("volume/file"));
        retain(locator, folder.makeFolder("volume/inner"));
        retain(locator, folder.write("elsewhere"));
        EXPECT_EQ(locator.heldDescriptorCount(), 3u);
        EXPECT_FALSE(mounts.unmount(volume));

        locator.releaseVolume(volume);

        EXPECT_EQ(locator.heldDescriptorCount(), 1u);
        EXPECT_TRUE(mounts.unmount(volume));
    });
}

TEST_F(LocatorMountsTest, HoldsNothingAnewOnAVolumeThatItLetGo)
{
    run([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto inner = folder.makeFolder("volume/inner");
        auto ref = retain(locator, inner);
        locator.releaseVolume(folder.path("volume/inner"));
        retain(locator, folder.write("volume/file"));
        folder.rename("volume/inner", "volume/renamed");
        locator.locate(ref, inner);

        EXPECT_EQ(locator.heldDescriptorCount(), 0u);
        EXPECT_TRUE(mounts.unmount(folder.path("volume")));
    });
}

TEST_F(LocatorMountsTest, DoesNotFindWhatIsCoveredByAMount)
{
    run([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto url = folder.makeFolder("inner");
        const auto inner = retain(locator, url);
        const auto file = retain(locator, folder.write("inner/file"));
        ASSERT_TRUE(mounts.mountMemory(folder.path("inner")));
        folder.write("inner/file");

        EXPECT_FALSE(locator.locate(inner, url));
        EXPECT_FALSE(locator.locate(file, folder.url("inner/file")));
    });
}

TEST_F(LocatorMountsTest, FindsAFileWhoseBirthTimeChangedWhenOverlayfsCopiedIt)
{
    run([this](PrivateMounts& mounts, zef::Locator& locator) {
        for (const auto* name : { "volume/lower", "volume/upper", "volume/work", "volume/merged" })
            folder.makeFolder(name);
        folder.write("volume/lower/before");
        if (!mounts.mountOverlay(folder.path("volume/lower"), folder.path("volume/upper"),
                folder.path("volume/work"), folder.path("volume/merged")))
            GTEST_SKIP() << "no overlays";
        const auto url = folder.url("volume/merged/before");
        const auto file = retain(locator, url);
        auto withoutHandle = file;
        withoutHandle.setHandle({});
        // Until the kernel's tick has gone by.
        while (birthTime(folder.write("volume/clock")) == file.birthTime())
            folder.remove("volume/clock");
        folder.append("volume/merged/before", "more");
        const auto renamed = folder.rename("volume/merged/before", "volume/merged/after");

        EXPECT_EQ(locator.locate(file, url), renamed);
        // What is held knows the handle.
        EXPECT_EQ(locator.locate(withoutHandle, url), renamed);
        locator.setDescriptorBudget(0);
        EXPECT_EQ(locator.locate(file, url), renamed);
    });
}

TEST_F(LocatorMountsTest, FindsAMountedFolder)
{
    run([this](PrivateMounts&, zef::Locator& locator) {
        const auto url = folder.folderUrl("volume");
        const auto volume = retain(locator, url);

        EXPECT_EQ(locator.locate(volume, url), url);
    });
}

TEST_F(LocatorMountsTest, LooksInFoldersWhereTheSystemTellsNoPaths)
{
    run([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto url = folder.write("before");
        const auto file = retain(locator, url);
        const auto renamed = folder.rename("before", "after");
        if (!mounts.mountMemory("/proc"))
            GTEST_SKIP() << "nothing may be mounted over /proc";

        EXPECT_EQ(locator.locate(file, url), renamed);
    });
}

TEST_F(LocatorMountsTest, LetsAVolumeGoByAnyPathOnIt)
{
    run([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto url = folder.write("volume/file");
        retain(locator, url);
        locator.releaseVolume("");
        locator.releaseVolume(folder.path("missing"));
        EXPECT_EQ(locator.heldDescriptorCount(), 1u);

        locator.releaseVolume(url.path());

        EXPECT_TRUE(mounts.unmount(folder.path("volume")));
    });
}

} // namespace

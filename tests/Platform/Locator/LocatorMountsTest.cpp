// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateMounts.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int noMounts = 100;

// Each test works in a child process that has mounts of its own; 0 means that all was well, another
// number which step was not.
class LocatorMountsTest : public testing::Test {
protected:
    LocatorMountsTest() { folder.makeFolder("volume"); }

    template <typename Work> void expectSuccess(Work&& work)
    {
        const auto result = resultInChildProcess([&] {
            PrivateMounts mounts;
            if (!mounts || !mounts.mountMemory(folder.path("volume")))
                return noMounts;
            zef::LinuxLocator locator;
            locator.setDescriptorPolicy(zef::DescriptorPolicy::always);
            return work(mounts, locator);
        });
        if (result == noMounts)
            GTEST_SKIP() << "the process may not mount anything";
        EXPECT_EQ(result, 0);
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
    expectSuccess([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto volume = folder.path("volume");
        retain(locator, folder.write("volume/file"));
        retain(locator, folder.makeFolder("volume/inner"));
        retain(locator, folder.write("elsewhere"));
        if (locator.heldDescriptorCount() != 3 || mounts.unmount(volume))
            return 1;
        locator.releaseVolume(volume);
        if (locator.heldDescriptorCount() != 1)
            return 2;
        return mounts.unmount(volume) ? 0 : 3;
    });
}

TEST_F(LocatorMountsTest, HoldsNothingAnewOnAVolumeThatItLetGo)
{
    expectSuccess([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto inner = folder.makeFolder("volume/inner");
        auto ref = retain(locator, inner);
        locator.releaseVolume(folder.path("volume/inner"));
        retain(locator, folder.write("volume/file"));
        folder.rename("volume/inner", "volume/renamed");
        locator.locate(ref, inner);
        if (locator.heldDescriptorCount() != 0)
            return 1;
        return mounts.unmount(folder.path("volume")) ? 0 : 2;
    });
}

TEST_F(LocatorMountsTest, DoesNotFindWhatIsCoveredByAMount)
{
    expectSuccess([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto url = folder.makeFolder("inner");
        const auto inner = retain(locator, url);
        const auto file = retain(locator, folder.write("inner/file"));
        if (!mounts.mountMemory(folder.path("inner")))
            return noMounts;
        folder.write("inner/file");
        if (locator.locate(inner, url))
            return 1;
        return locator.locate(file, folder.url("inner/file")) ? 2 : 0;
    });
}

TEST_F(LocatorMountsTest, FindsAFileWhoseBirthTimeChangedWhenOverlayfsCopiedIt)
{
    expectSuccess([this](PrivateMounts& mounts, zef::Locator& locator) {
        for (const auto* name : { "volume/lower", "volume/upper", "volume/work", "volume/merged" })
            folder.makeFolder(name);
        folder.write("volume/lower/before");
        if (!mounts.mountOverlay(folder.path("volume/lower"), folder.path("volume/upper"),
                folder.path("volume/work"), folder.path("volume/merged")))
            return noMounts;
        const auto url = folder.url("volume/merged/before");
        const auto file = retain(locator, url);
        auto withoutHandle = file;
        withoutHandle.setHandle({});
        // Until the kernel's tick has gone by.
        while (birthTime(folder.write("volume/clock")) == file.birthTime())
            folder.remove("volume/clock");
        folder.append("volume/merged/before", "more");
        const auto renamed = folder.rename("volume/merged/before", "volume/merged/after");
        if (locator.locate(file, url) != renamed)
            return 1;
        // What is held knows the handle.
        if (locator.locate(withoutHandle, url) != renamed)
            return 2;
        locator.setDescriptorBudget(0);
        return locator.locate(file, url) == renamed ? 0 : 3;
    });
}

TEST_F(LocatorMountsTest, FindsAMountedFolder)
{
    expectSuccess([this](PrivateMounts&, zef::Locator& locator) {
        const auto volume = retain(locator, folder.folderUrl("volume"));
        return locator.locate(volume, folder.folderUrl("volume")) == folder.folderUrl("volume") ? 0
                                                                                                : 1;
    });
}

TEST_F(LocatorMountsTest, LooksInFoldersWhereTheSystemTellsNoPaths)
{
    expectSuccess([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto url = folder.write("before");
        const auto file = retain(locator, url);
        const auto renamed = folder.rename("before", "after");
        if (!mounts.mountMemory("/proc"))
            return noMounts;
        return locator.locate(file, url) == renamed ? 0 : 1;
    });
}

TEST_F(LocatorMountsTest, LetsAVolumeGoByAnyPathOnIt)
{
    expectSuccess([this](PrivateMounts& mounts, zef::Locator& locator) {
        const auto url = folder.write("volume/file");
        retain(locator, url);
        locator.releaseVolume("");
        locator.releaseVolume(folder.path("missing"));
        if (locator.heldDescriptorCount() != 1)
            return 1;
        locator.releaseVolume(url.path());
        return mounts.unmount(folder.path("volume")) ? 0 : 2;
    });
}

} // namespace

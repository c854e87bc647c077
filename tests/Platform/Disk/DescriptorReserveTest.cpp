// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"

#include "tests/support/FakeLocator.h"
#include "tests/support/FewDescriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

// No fixture: UndefinedBehaviorSanitizer looks at each object of a class with virtual functions by
// a pipe when it first meets it, and here there is none to be had.
struct Scene {
    Scene()
    {
        giveBack();
        reserve.setGiver(giveBack);
    }

    static bool giveBack() { return zef::Locator::shared().giveBackOneDescriptor(); }

    int open(const std::string& path)
    {
        return reserve.openAt(AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY);
    }
    int open() { return open(folder.path()); }

    TemporaryFolder folder;
    FakeLocator locator;
    zef::DescriptorReserve reserve;
};

TEST(DescriptorReserveTest, OpensWhatItIsAskedTo)
{
    Scene scene;
    scene.folder.write("file");
    const int opened = scene.open();

    EXPECT_EQ(::faccessat(opened, "file", F_OK, 0), 0);
    scene.reserve.close(opened);
}

TEST(DescriptorReserveTest, OpensForThisProgramOnly)
{
    Scene scene;
    const int opened = scene.open();

    EXPECT_EQ(::fcntl(opened, F_GETFD), FD_CLOEXEC);
    scene.reserve.close(opened);
}

TEST(DescriptorReserveTest, SaysWhyItDidNotOpenAndKeepsTheSpare)
{
    Scene scene;
    EXPECT_EQ(scene.open("/no/such/folder"), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_TRUE(scene.reserve.isFilled());
}

TEST(DescriptorReserveTest, AsksTheGiverForADescriptorBeforeItUsesTheSpare)
{
    Scene scene;
    int held = ::open("/", O_PATH | O_CLOEXEC);
    scene.locator.setGiveBack([&] { return held >= 0 && ::close(std::exchange(held, -1)) == 0; });
    const FewDescriptors none(0);
    const int opened = scene.open();

    EXPECT_GE(opened, 0);
    EXPECT_EQ(held, -1);
    EXPECT_TRUE(scene.reserve.isFilled());
    scene.reserve.close(opened);
}

TEST(DescriptorReserveTest, StopsAskingALocatorWhoseDescriptorsDoNotHelp)
{
    Scene scene;
    int askedFor = 0;
    scene.locator.setGiveBack([&] { return ++askedFor > 0; });
    const FewDescriptors none(0);
    const int opened = scene.open();

    EXPECT_GE(opened, 0);
    EXPECT_LT(askedFor, 100);
    scene.reserve.close(opened);
}

TEST(DescriptorReserveTest, OpensOnceMoreWhenNoDescriptorIsLeft)
{
    Scene scene;
    const FewDescriptors none(0);
    const int opened = scene.open();

    EXPECT_GE(opened, 0);
    EXPECT_FALSE(scene.reserve.isFilled());
    EXPECT_EQ(scene.open(), -1);
    EXPECT_EQ(errno, EMFILE);
    scene.reserve.close(opened);
}

TEST(DescriptorReserveTest, HasItsSpareBackAfterTheClose)
{
    Scene scene;
    const FewDescriptors none(0);
    scene.reserve.close(scene.open());

    EXPECT_TRUE(scene.reserve.isFilled());
    const int opened = scene.open();
    EXPECT_GE(opened, 0);
    scene.reserve.close(opened);
}

TEST(DescriptorReserveTest, HasItsSpareBackWhenSomethingElseMadeRoom)
{
    Scene scene;
    const FewDescriptors none(0);
    const int opened = scene.open();
    ::close(opened);
    scene.reserve.refill();

    EXPECT_TRUE(scene.reserve.isFilled());
}

TEST(DescriptorReserveTest, LeavesErrnoAloneWhenItCloses)
{
    Scene scene;
    const int opened = scene.open();
    errno = ENOTDIR;
    scene.reserve.close(opened);
    scene.reserve.close(-1);

    EXPECT_EQ(errno, ENOTDIR);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/DescriptorReserve.h"

#include "tests/support/FakeLocator.h"
#include "tests/support/FewDescriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

class DescriptorReserveTest : public testing::Test {
protected:
    int open(const char* path) { return reserve.openAt(AT_FDCWD, path, O_RDONLY | O_DIRECTORY); }
    int open() { return open(folder.path().c_str()); }

    TemporaryFolder folder;
    FakeLocator locator;
    zef::DescriptorReserve reserve;
};

TEST_F(DescriptorReserveTest, OpensWhatItIsAskedTo)
{
    folder.write("file");
    const int opened = open();

    EXPECT_EQ(::faccessat(opened, "file", F_OK, 0), 0);
    reserve.close(opened);
}

TEST_F(DescriptorReserveTest, OpensForThisProgramOnly)
{
    const int opened = open();

    EXPECT_EQ(::fcntl(opened, F_GETFD), FD_CLOEXEC);
    reserve.close(opened);
}

TEST_F(DescriptorReserveTest, SaysWhyItDidNotOpenAndKeepsTheSpare)
{
    EXPECT_EQ(open("/no/such/folder"), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_TRUE(reserve.isFilled());
}

TEST_F(DescriptorReserveTest, AsksTheLocatorForADescriptorBeforeItUsesTheSpare)
{
    int held = ::open("/", O_PATH | O_CLOEXEC);
    locator.setGiveBack([&] { return held >= 0 && ::close(std::exchange(held, -1)) == 0; });
    const FewDescriptors none(0);
    const int opened = open();

    EXPECT_GE(opened, 0);
    EXPECT_EQ(held, -1);
    EXPECT_TRUE(reserve.isFilled());
    reserve.close(opened);
}

TEST_F(DescriptorReserveTest, StopsAskingALocatorWhoseDescriptorsDoNotHelp)
{
    int askedFor = 0;
    locator.setGiveBack([&] { return ++askedFor > 0; });
    const FewDescriptors none(0);
    const int opened = open();

    EXPECT_GE(opened, 0);
    EXPECT_LT(askedFor, 100);
    reserve.close(opened);
}

TEST_F(DescriptorReserveTest, OpensOnceMoreWhenNoDescriptorIsLeft)
{
    const FewDescriptors none(0);
    const int opened = open();

    EXPECT_GE(opened, 0);
    EXPECT_FALSE(reserve.isFilled());
    EXPECT_EQ(open(), -1);
    EXPECT_EQ(errno, EMFILE);
    reserve.close(opened);
}

TEST_F(DescriptorReserveTest, HasItsSpareBackAfterTheClose)
{
    const FewDescriptors none(0);
    reserve.close(open());

    EXPECT_TRUE(reserve.isFilled());
    const int opened = open();
    EXPECT_GE(opened, 0);
    reserve.close(opened);
}

TEST_F(DescriptorReserveTest, HasItsSpareBackWhenSomethingElseMadeRoom)
{
    const FewDescriptors none(0);
    const int opened = open();
    ::close(opened);
    reserve.refill();

    EXPECT_TRUE(reserve.isFilled());
}

TEST_F(DescriptorReserveTest, LeavesErrnoAloneWhenItCloses)
{
    const int opened = open();
    errno = ENOTDIR;
    reserve.close(opened);
    reserve.close(-1);

    EXPECT_EQ(errno, ENOTDIR);
}

} // namespace

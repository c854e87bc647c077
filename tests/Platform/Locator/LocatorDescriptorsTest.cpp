// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/HoldingLocator.h"
#include "tests/support/Privileges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include <sys/resource.h>

namespace {

class LocatorDescriptorsTest : public testing::Test, protected HoldingLocator { };

TEST_F(LocatorDescriptorsTest, HoldsWhatIsRetainedAndClosesWhatIsReleased)
{
    const auto file = track(folder.write("file"));
    const auto inner = track(folder.makeFolder("inner"));
    EXPECT_EQ(locator.heldDescriptorCount(), 2u);

    locator.release(file.ref);
    EXPECT_EQ(locator.heldDescriptorCount(), 1u);
    locator.release(inner.ref);
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

TEST_F(LocatorDescriptorsTest, HoldsAnObjectUntilItsLastUseIsGone)
{
    const auto url = folder.write("file");
    const auto first = track(url);
    const auto second = track(url);
    const auto innerURL = folder.makeFolder("inner");
    const auto inner = track(innerURL);
    const auto innerAgain = track(innerURL);
    EXPECT_EQ(locator.heldDescriptorCount(), 2u);

    locator.release(first.ref);
    locator.release(inner.ref);
    EXPECT_EQ(locator.heldDescriptorCount(), 2u);
    locator.release(second.ref);
    locator.release(innerAgain.ref);
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

TEST_F(LocatorDescriptorsTest, DoesNotMindTheReleaseOfWhatItDoesNotHold)
{
    locator.release(ref(folder.write("file")));
    locator.release(ref(folder.makeFolder("inner")));

    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

TEST_F(LocatorDescriptorsTest, HoldsNothingWithoutABudget)
{
    locator.setDescriptorBudget(0);
    const auto file = track(folder.write("file"));
    track(folder.makeFolder("inner"));

    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
    EXPECT_TRUE(file.ref.hasHandle());
}

TEST_F(LocatorDescriptorsTest, TakesNoMemoryForAFileThatItDoesNotHold)
{
    if (!AllocationCounter::isAvailable())
        GTEST_SKIP() << "the sanitizer has a heap of its own";
    locator.setDescriptorBudget(0);
    const auto first = folder.write("first");
    const auto second = folder.write("second");
    auto file = ref(second);
    track(first);
    const AllocationCounter counter;
    locator.retain(file, second);
    locator.release(file);

    EXPECT_EQ(counter.count(), 0u);
}

TEST_F(LocatorDescriptorsTest, LeavesFilesBeyondItsBudgetToBeLookedFor)
{
    locator.setDescriptorBudget(4);
    for (int number = 0; number < 10; ++number)
        track(folder.write(std::to_string(number)));
    const auto last = track(folder.write("last"));
    const auto renamed = folder.rename("last", "renamed");

    EXPECT_EQ(locator.heldDescriptorCount(), 2u);
    EXPECT_EQ(locator.locate(last.ref, last.url), renamed);
}

TEST_F(LocatorDescriptorsTest, FindsAFolderThatHadToMakeRoom)
{
    locator.setDescriptorBudget(2);
    const auto first = track(folder.makeFolder("first"));
    const auto file = track(folder.write("first/file"));
    track(folder.makeFolder("second"));
    const auto renamed = folder.rename("first", "renamed");

    EXPECT_EQ(locator.heldDescriptorCount(), 2u);
    EXPECT_EQ(locator.locate(first.ref, first.url), renamed);
    EXPECT_EQ(locator.locate(file.ref, file.url), folder.url("renamed/file"));
}

TEST_F(LocatorDescriptorsTest, HoldsAFolderAgainThatItFoundByItsHandle)
{
    if (!mayOpenByHandle(folder.path()))
        GTEST_SKIP() << "the process may not open objects by their handles";
    const auto inner = track(folder.makeFolder("inner"));
    ASSERT_TRUE(locator.giveBackOneDescriptor());
    folder.rename("inner", "renamed");

    EXPECT_TRUE(locator.locate(inner.ref, inner.url));
    EXPECT_EQ(locator.heldDescriptorCount(), 1u);
    locator.release(inner.ref);
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

TEST_F(LocatorDescriptorsTest, DoesNotHoldAFolderThatNobodyRetains)
{
    const auto url = folder.makeFolder("inner");
    auto inner = ref(url);
    locator.retain(inner, url);
    locator.release(inner);
    folder.rename("inner", "renamed");

    EXPECT_TRUE(locator.locate(inner, url));
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

TEST_F(LocatorDescriptorsTest, ClosesTheDescriptorsOfDeletedFilesWhileOthersCome)
{
    for (int number = 0; number < 20; ++number)
        track(folder.write("old " + std::to_string(number)));
    for (int number = 0; number < 20; ++number)
        folder.remove("old " + std::to_string(number));
    for (int number = 0; number < 20; ++number)
        track(folder.write("new " + std::to_string(number)));

    EXPECT_EQ(locator.heldDescriptorCount(), 20u);
}

TEST_F(LocatorDescriptorsTest, GivesBackOneDescriptorAfterTheOther)
{
    track(folder.write("file"));
    track(folder.makeFolder("inner"));

    EXPECT_TRUE(locator.giveBackOneDescriptor());
    EXPECT_EQ(locator.heldDescriptorCount(), 1u);
    EXPECT_TRUE(locator.giveBackOneDescriptor());
    EXPECT_FALSE(locator.giveBackOneDescriptor());
}

TEST_F(LocatorDescriptorsTest, ClosesWhatASmallerBudgetHasNoRoomFor)
{
    for (int number = 0; number < 10; ++number)
        track(folder.write(std::to_string(number)));
    locator.setDescriptorBudget(4);

    EXPECT_EQ(locator.descriptorBudget(), 4u);
    EXPECT_EQ(locator.heldDescriptorCount(), 2u);
}

TEST_F(LocatorDescriptorsTest, ClosesAndHoldsNothingWhenItNeverMay)
{
    track(folder.write("before"));
    locator.setDescriptorPolicy(zef::DescriptorPolicy::never);
    const auto after = track(folder.write("after"));

    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
    EXPECT_TRUE(after.ref.hasHandle());
    EXPECT_NE(after.ref.parentInode(), 0u);
}

TEST_F(LocatorDescriptorsTest, MayHoldAQuarterOfTheProcessesDescriptorsWithinBounds)
{
    const auto expectBudget = [](rlim_t descriptors, std::size_t budget) {
        runInChildProcess([&] {
            struct rlimit limit;
            ::getrlimit(RLIMIT_NOFILE, &limit);
            limit.rlim_cur = descriptors;
            ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
            EXPECT_EQ(zef::LinuxLocator().descriptorBudget(), budget);
        });
    };

    expectBudget(1024, 256);
    expectBudget(100, 64);
    struct rlimit limit;
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const auto high = std::min<rlim_t>(limit.rlim_max, 20000);
    expectBudget(high, std::clamp<rlim_t>(high / 4, 64, 4096));
}

} // namespace

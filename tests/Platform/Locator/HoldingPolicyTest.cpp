// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/HoldingPolicy.h"

#include "tests/support/PrivateMounts.h"
#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

bool mayHoldAt(zef::HoldingPolicy& policy, const std::string& path)
{
    const auto object = zef::ObjectDescriptor::open(path.c_str());
    zef::Stat stat;
    std::uint64_t mountID = 0;
    EXPECT_EQ(object->stat(stat, mountID), 0);
    return policy.mayHold(*object, stat.device, mountID);
}

class HoldingPolicyTest : public testing::Test {
protected:
    HoldingPolicyTest() { zef::Clock::replaceShared(&clock); }
    ~HoldingPolicyTest() override { zef::Clock::replaceShared(nullptr); }

    bool mayHold(std::uint32_t device, std::uint64_t mountID)
    {
        return policy.mayHold(*object, device, mountID);
    }

    SteppedClock clock;
    TemporaryFolder folder;
    zef::HoldingPolicy policy;
    zef::Ref<zef::ObjectDescriptor> object = zef::ObjectDescriptor::open(folder.path().c_str());
};

TEST_F(HoldingPolicyTest, IsForFixedVolumesAtFirst)
{
    EXPECT_EQ(policy.policy(), zef::DescriptorPolicy::fixedVolumes);
}

TEST_F(HoldingPolicyTest, HoldsNothingOrEverythingAsItIsTold)
{
    policy.setPolicy(zef::DescriptorPolicy::never);
    EXPECT_FALSE(mayHoldAt(policy, folder.path()));
    policy.setPolicy(zef::DescriptorPolicy::always);
    EXPECT_TRUE(mayHoldAt(policy, folder.path()));
}

TEST_F(HoldingPolicyTest, HoldsNothingOnABarredDeviceForAMinute)
{
    policy.setPolicy(zef::DescriptorPolicy::always);
    policy.bar(7, 70);

    EXPECT_FALSE(mayHold(7, 70));
    EXPECT_FALSE(mayHold(7, 71));
    EXPECT_FALSE(mayHold(8, 70));
    EXPECT_TRUE(mayHold(8, 71));
    EXPECT_TRUE(mayHold(8, 0));
    clock.advance(59);
    EXPECT_FALSE(mayHold(7, 70));
    clock.advance(2);
    EXPECT_TRUE(mayHold(7, 70));
}

TEST_F(HoldingPolicyTest, BarsADeviceWhoseMountIsNotKnown)
{
    policy.setPolicy(zef::DescriptorPolicy::always);
    policy.bar(7, 0);

    EXPECT_FALSE(mayHold(7, 0));
    EXPECT_FALSE(mayHold(7, 70));
    EXPECT_TRUE(mayHold(8, 0));
}

TEST_F(HoldingPolicyTest, LiftsTheBarWhenThePolicyIsSet)
{
    policy.bar(7, 70);
    policy.setPolicy(zef::DescriptorPolicy::always);

    EXPECT_TRUE(mayHold(7, 70));
}

TEST_F(HoldingPolicyTest, HoldsNothingThatIsMountedWhereRemovableVolumesAre)
{
    runWithVolume("/mnt", [this](PrivateMounts&) {
        EXPECT_FALSE(mayHoldAt(policy, "/mnt"));
        policy.setPolicy(zef::DescriptorPolicy::always);
        EXPECT_TRUE(mayHoldAt(policy, "/mnt"));
    });
}

TEST_F(HoldingPolicyTest, HoldsWhatIsMountedElsewhere)
{
    if (folder.path().starts_with("/mnt/"))
        GTEST_SKIP() << "the tests' folder is where removable volumes are";

    runWithVolume(
        folder.path(), [this](PrivateMounts&) { EXPECT_TRUE(mayHoldAt(policy, folder.path())); });
}

} // namespace

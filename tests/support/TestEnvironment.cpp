// SPDX-License-Identifier: MIT
#include "tests/support/TestEnvironment.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Time/RecentLook.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class TestEnvironment final : public testing::Environment {
public:
    void SetUp() override
    {
        // Opened before any test counts descriptors.
        zef::DescriptorReserve::shared();
        applyDescriptorBudget();
        // Tests are quick enough to change a file within the moment for which a look serves.
        zef::RecentLook::setLifetime(0);
    }
};

const auto* const environment = testing::AddGlobalTestEnvironment(new TestEnvironment);

} // namespace

void applyDescriptorBudget()
{
    if (const char* budget = std::getenv("ZEF_DESCRIPTOR_BUDGET"))
        zef::Locator::system().setDescriptorBudget(std::strtoul(budget, nullptr, 10));
}

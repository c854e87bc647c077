// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include <cstddef>

/// While it lives the shared locator holds no more than so many descriptors.
class DescriptorBudget {
public:
    explicit DescriptorBudget(std::size_t budget)
        : _former(zef::Locator::shared().descriptorBudget())
    {
        zef::Locator::shared().setDescriptorBudget(budget);
    }

    ~DescriptorBudget() { zef::Locator::shared().setDescriptorBudget(_former); }
    DescriptorBudget(const DescriptorBudget&) = delete;
    DescriptorBudget& operator=(const DescriptorBudget&) = delete;

private:
    std::size_t _former;
};

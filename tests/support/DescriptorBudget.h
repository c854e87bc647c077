// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include <cstddef>

/// Limits how many descriptors the shared locator holds while this lives.
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

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include <atomic>
#include <functional>

/// The real locator; the test sees what is retained. Replaces the shared one while it lives. Any
/// thread.
class SpyLocator final : public zef::Locator {
public:
    SpyLocator() { replaceShared(this); }
    ~SpyLocator() override { replaceShared(nullptr); }
    SpyLocator(const SpyLocator&) = delete;
    SpyLocator& operator=(const SpyLocator&) = delete;

    std::atomic<int> retainCount{ 0 };
    std::atomic<int> releaseCount{ 0 };
    /// Called with each object that is retained. Set it while nobody else uses the locator.
    std::function<void()> onRetain;

    void retain(zef::FSRef& ref, const zef::FileURL& url) override
    {
        ++retainCount;
        if (onRetain)
            onRetain();
        system().retain(ref, url);
    }

    void release(const zef::FSRef& ref) override
    {
        ++releaseCount;
        system().release(ref);
    }

    bool makeRef(const zef::FileURL& url, const zef::Stat& stat, zef::FSRef& ref) override
    {
        return system().makeRef(url, stat, ref);
    }

    zef::FileURL locate(const zef::FSRef& ref, const zef::FileURL& lastKnown) override
    {
        return system().locate(ref, lastKnown);
    }

    void releaseVolume(std::string_view path) override { system().releaseVolume(path); }
    bool giveBackOneDescriptor() override { return system().giveBackOneDescriptor(); }
    void setDescriptorBudget(std::size_t budget) override { system().setDescriptorBudget(budget); }
    std::size_t descriptorBudget() const override { return system().descriptorBudget(); }
    std::size_t heldDescriptorCount() const override { return system().heldDescriptorCount(); }

    void setDescriptorPolicy(zef::DescriptorPolicy policy) override
    {
        system().setDescriptorPolicy(policy);
    }
};

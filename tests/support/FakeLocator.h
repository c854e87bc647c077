// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <unordered_map>
#include <utility>

/// A locator that finds objects where the test says. Replaces the shared one while it lives. It
/// does not touch the disk and completes no reference. Any thread.
class FakeLocator final : public zef::Locator {
public:
    // The real one first: it makes the shared locator known to the reserve of descriptors.
    FakeLocator() { system(), replaceShared(this); }
    ~FakeLocator() override { replaceShared(nullptr); }
    FakeLocator(const FakeLocator&) = delete;
    FakeLocator& operator=(const FakeLocator&) = delete;

    /// Where every object without a place of its own is from now on; null for nowhere, the default.
    void setAnswer(zef::FileURL);
    /// Where the object with these numbers is from now on; null for nowhere.
    void setPlace(const zef::FSRef&, zef::FileURL);
    /// From now on there are no references to be had, or there are again.
    void setRefusesReferences(bool refuses) { _refusesReferences = refuses; }
    /// What happens when a descriptor is wanted back; says whether there is one.
    void setGiveBack(std::function<bool()> giveBack) { _giveBack = std::move(giveBack); }

    /// What happens, with no lock held, before an object is retained.
    void setBeforeRetain(std::function<void()> hook) { _beforeRetain = std::move(hook); }

    /// How often it was asked where an object is.
    int locateCount() const { return _locateCount; }
    int retainCount() const { return _retainCount; }
    int releaseCount() const { return _releaseCount; }
    /// How many times an object is retained more than released.
    int uses(const zef::FSRef&) const;

    bool makeRef(const zef::FileURL&, const zef::Stat&, zef::FSRef&) override;
    void retain(zef::FSRef&, const zef::FileURL&) override;
    void release(const zef::FSRef&) override;
    zef::FileURL locate(const zef::FSRef&, const zef::FileURL&) override;
    void releaseVolume(std::string_view) override { }
    bool giveBackOneDescriptor() override { return _giveBack && _giveBack(); }
    void setDescriptorBudget(std::size_t budget) override { _budget = budget; }
    std::size_t descriptorBudget() const override { return _budget; }
    std::size_t heldDescriptorCount() const override { return 0; }
    void setDescriptorPolicy(zef::DescriptorPolicy) override { }

private:
    struct Object {
        bool hasPlace = false;
        zef::FileURL place;
        int uses = 0;
    };

    mutable std::mutex _mutex;
    zef::FileURL _answer;
    std::unordered_map<zef::ObjectNumbers, Object, zef::ObjectNumbers::Hash> _objects;
    std::function<bool()> _giveBack;
    std::function<void()> _beforeRetain;
    std::atomic<bool> _refusesReferences{ false };
    std::atomic<int> _locateCount{ 0 };
    std::atomic<int> _retainCount{ 0 };
    std::atomic<int> _releaseCount{ 0 };
    std::atomic<std::size_t> _budget{ 64 };
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Time/ExpiringCache.h"

#include <atomic>
#include <cstdint>
#include <utility>

namespace zef {

/// Decides on which volumes descriptors may be held. Any thread; no lock is held while the mounts
/// are looked at.
class HoldingPolicy {
public:
    void setPolicy(DescriptorPolicy);
    DescriptorPolicy policy() const { return _policy; }

    /// Whether `object`, which is on this device and mount (0: not known), may be held. What is
    /// found out of a mount counts for a second, because numbers are used again.
    bool mayHold(const ObjectDescriptor& object, std::uint32_t device, std::uint64_t mountID);

    /// Nothing is held on this device, nor through this mount, for the next minute: somebody is
    /// about to unmount it. `setPolicy` lifts the bar.
    void bar(std::uint32_t device, std::uint64_t mountID);

private:
    bool isBarred(std::uint32_t device, std::uint64_t mountID, double now) const;

    std::atomic<DescriptorPolicy> _policy{ DescriptorPolicy::fixedVolumes };
    /// What was found out, by device and mount.
    ExpiringCache<std::pair<std::uint32_t, std::uint64_t>, bool> _verdicts{ { .seconds = 1 } };
    /// True for each that is barred.
    ExpiringCache<std::uint32_t, bool> _barredDevices{ { .seconds = 60 } };
    ExpiringCache<std::uint64_t, bool> _barredMounts{ { .seconds = 60 } };
};

} // namespace zef

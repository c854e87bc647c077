// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include <cstdint>
#include <mutex>
#include <vector>

namespace zef {

/// Decides on which volumes descriptors may be held. Any thread; no lock is held while the mounts
/// are looked at.
class HoldingPolicy {
public:
    void setPolicy(DescriptorPolicy);
    DescriptorPolicy policy() const;

    /// Whether `object`, which is on this device and mount (0: not known), may be held. What is
    /// found out of a mount counts for a second, because numbers are used again.
    bool mayHold(const ObjectDescriptor& object, std::uint32_t device, std::uint64_t mountID);

    /// Nothing is held on this device, nor through this mount, for the next minute: somebody is
    /// about to unmount it. `setPolicy` lifts the bar.
    void bar(std::uint32_t device, std::uint64_t mountID);

private:
    struct Verdict {
        std::uint32_t device;
        std::uint64_t mountID;
        bool mayHold;
        bool isBar;
        double validUntil;
    };

    const Verdict* find(std::uint32_t device, std::uint64_t mountID) const;
    void remember(Verdict);

    mutable std::mutex _mutex;
    DescriptorPolicy _policy = DescriptorPolicy::fixedVolumes;
    std::vector<Verdict> _verdicts;
};

} // namespace zef

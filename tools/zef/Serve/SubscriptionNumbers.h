// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cstdint>
#include <map>
#include <unordered_map>

namespace tool {

/// Gives each subscription that the file manager keeps a number that no other ever had.
class SubscriptionNumbers {
public:
    std::uint64_t number(ZEFDirectorySubscription&);

    /// The subscription, borrowed; nil when the manager has dropped it or never had it.
    ZEFDirectorySubscription* subscription(std::uint64_t number) const;

    /// Forgets the subscriptions that the manager has dropped. They live until then, so that no new
    /// one can have the place in memory of one that has a number.
    void forgetDropped();
    void forgetAll();

private:
    static bool isKept(const ZEFDirectorySubscription*);

    std::uint64_t _lastNumber = 0;
    std::map<std::uint64_t, zef::Ref<ZEFDirectorySubscription>> _subscriptions;
    std::unordered_map<const ZEFDirectorySubscription*, std::uint64_t> _numbers;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/SubscriptionNumbers.h"

#include <algorithm>
#include <unordered_set>

namespace tool {

std::uint64_t SubscriptionNumbers::number(ZEFDirectorySubscription& subscription)
{
    auto& number = _numbers[&subscription];
    if (number)
        return number;
    number = ++_lastNumber;
    _subscriptions.emplace(number, &subscription);
    return number;
}

ZEFDirectorySubscription* SubscriptionNumbers::subscription(std::uint64_t number) const
{
    const auto found = _subscriptions.find(number);
    const bool isThere = found != _subscriptions.end() && isKept(found->second.get());
    return isThere ? found->second.get() : nullptr;
}

void SubscriptionNumbers::forgetDropped()
{
    const auto list = ZEFFileManager::defaultFileManager()->subscriptions();
    const std::unordered_set<const ZEFDirectorySubscription*> kept(list.begin(), list.end());
    std::erase_if(_numbers, [&](const auto& entry) { return !kept.contains(entry.first); });
    std::erase_if(
        _subscriptions, [&](const auto& entry) { return !kept.contains(entry.second.get()); });
}

void SubscriptionNumbers::forgetAll()
{
    _numbers.clear();
    _subscriptions.clear();
}

bool SubscriptionNumbers::isKept(const ZEFDirectorySubscription* subscription)
{
    const auto kept = ZEFFileManager::defaultFileManager()->subscriptions();
    return std::find(kept.begin(), kept.end(), subscription) != kept.end();
}

} // namespace tool

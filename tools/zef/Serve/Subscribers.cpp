// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/Subscribers.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/Serve/Message.h"

#include <algorithm>
#include <unordered_set>

namespace tool {

class Subscribers::Named final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    Named(const std::string& name, Subscribers& subscribers)
        : _name(name)
        , _subscribers(subscribers)
    {
    }

    void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription* subscription, ZEFChangeArray* changes) override
    {
        sendNotification("directorySubscription.foundChanges",
            JSONObject()
                .add("subscriber", _name)
                .add("subscription", _subscribers.number(*subscription))
                .add("changes", jsonOfChanges(*changes)));
    }

private:
    std::string _name;
    Subscribers& _subscribers;
};

std::uint64_t Subscribers::number(ZEFDirectorySubscription& subscription)
{
    auto& number = _numbers[&subscription];
    if (number)
        return number;
    number = ++_lastNumber;
    _subscriptions.emplace(number, &subscription);
    return number;
}

ZEFDirectorySubscription* Subscribers::subscription(std::uint64_t number) const
{
    const auto found = _subscriptions.find(number);
    if (found == _subscriptions.end())
        return nullptr;
    const auto kept = ZEFFileManager::defaultFileManager()->subscriptions();
    const bool isKept = std::find(kept.begin(), kept.end(), found->second.get()) != kept.end();
    return isKept ? found->second.get() : nullptr;
}

zef::Ref<ZEFObject> Subscribers::subscriber(const std::string& name)
{
    return find(name).object;
}

std::set<std::uint64_t>& Subscribers::subscriptions(const std::string& name)
{
    return find(name).subscriptions;
}

Subscribers::Subscriber& Subscribers::find(const std::string& name)
{
    auto& found = _subscribers[name];
    if (!found.object)
        found.object = zef::makeRef<Named>(name, *this);
    return found;
}

void Subscribers::forgetIdle(const std::string& name)
{
    const auto found = _subscribers.find(name);
    if (found != _subscribers.end() && found->second.subscriptions.empty())
        _subscribers.erase(found);
}

void Subscribers::forgetDropped()
{
    const auto list = ZEFFileManager::defaultFileManager()->subscriptions();
    const std::unordered_set<const ZEFDirectorySubscription*> kept(list.begin(), list.end());
    std::erase_if(_numbers, [&](const auto& entry) { return !kept.contains(entry.first); });
    std::erase_if(
        _subscriptions, [&](const auto& entry) { return !kept.contains(entry.second.get()); });
    // A subscription whose folder is gone may be dropped with its subscribers.
    for (auto entry = _subscribers.begin(); entry != _subscribers.end();) {
        auto& numbers = entry->second.subscriptions;
        std::erase_if(numbers, [this](auto number) { return !subscription(number); });
        entry = numbers.empty() ? _subscribers.erase(entry) : std::next(entry);
    }
}

void Subscribers::forgetSubscriptions()
{
    _numbers.clear();
    _subscriptions.clear();
}

} // namespace tool

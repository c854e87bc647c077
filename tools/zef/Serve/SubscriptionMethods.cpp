// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/SubscriptionMethods.h"

#include "tools/zef/NumberedFileItem.h"
#include "tools/zef/Serve/RPCError.h"
#include "tools/zef/Text.h"

namespace tool {
namespace {

ZEFFileManager& manager()
{
    return *ZEFFileManager::defaultFileManager();
}

} // namespace

void SubscriptionMethods::addTo(MethodTable& table)
{
    addSubscribing(table);
    addQuestions(table);
}

void SubscriptionMethods::addSubscribing(MethodTable& table)
{
    table.add("subscribe", { "subscriber", "path", "url", "id" },
        [this](const Parameters& parameters) { return subscribe(parameters); });
    table.add("unsubscribe", { "subscriber", "path", "url", "id", "subscription" },
        [this](const Parameters& parameters) { return unsubscribe(parameters); });
    table.add("checkDirectory", { "subscription" }, [this](const Parameters& parameters) {
        subscriptionOf(parameters).checkDirectory();
        return true;
    });
    table.add("loadImmediately", { "subscription" }, [this](const Parameters& parameters) {
        subscriptionOf(parameters).loadImmediately();
        return true;
    });
}

void SubscriptionMethods::addQuestions(MethodTable& table)
{
    table.add("subscription", { "subscription" },
        [this](const Parameters& parameters) { return subscription(parameters); });
    table.add("subscriptions", {}, [this](const Parameters&) { return subscriptions(); });
}

void SubscriptionMethods::forgetDropped()
{
    _numbers.forgetDropped();
    // A subscription whose folder is gone may be dropped with its subscribers.
    for (auto entry = _subscribers.begin(); entry != _subscribers.end();) {
        auto& numbers = entry->second->subscriptions;
        std::erase_if(numbers, [this](auto number) { return !_numbers.subscription(number); });
        entry = numbers.empty() ? _subscribers.erase(entry) : std::next(entry);
    }
}

void SubscriptionMethods::forgetAll()
{
    _numbers.forgetAll();
}

JSON SubscriptionMethods::subscribe(const Parameters& parameters)
{
    const auto name = parameters.text("subscriber");
    const auto given = parameters.choice({ "path", "url", "id" });
    if (given.empty())
        Parameters::refuse("path, url or id is missing");
    auto* made = subscribe(name, parameters, given);
    if (!made) {
        forgetIdle(name);
        return nullptr;
    }
    const auto number = _numbers.number(*made);
    subscriber(name).subscriptions.insert(number);
    return {
        { "subscription", number },
        { "url", jsonOfURL(made->url()) },
        { "isLoading", made->isLoading() },
    };
}

ZEFDirectorySubscription* SubscriptionMethods::subscribe(
    const std::string& name, const Parameters& parameters, const std::string& given)
{
    if (given == "path") {
        const auto path = parameters.text(given);
        return manager().subscribeForPath(&subscriber(name), path);
    }
    if (given == "url") {
        const auto url = parameters.url(given);
        return manager().subscribeForURL(&subscriber(name), url);
    }
    const auto item = parameters.item(given);
    return manager().subscribeForFile(&subscriber(name), item.get());
}

JSON SubscriptionMethods::unsubscribe(const Parameters& parameters)
{
    const auto name = parameters.text("subscriber");
    // Also a subscriber that was never heard of unsubscribes: that has effects of its own.
    const zef::Ref<NamedSubscriber> leaving = &subscriber(name);
    const auto before = subscriberCounts(leaving->subscriptions);
    try {
        unsubscribe(*leaving, parameters);
    } catch (const RPCError&) {
        forgetIdle(name);
        throw;
    }
    for (const auto& [number, count] : subscriberCounts(leaving->subscriptions)) {
        if (count < before.at(number))
            leaving->subscriptions.erase(number);
    }
    forgetIdle(name);
    return true;
}

std::map<std::uint64_t, std::int32_t> SubscriptionMethods::subscriberCounts(
    const std::set<std::uint64_t>& numbers) const
{
    std::map<std::uint64_t, std::int32_t> counts;
    for (const auto number : numbers) {
        const auto* subscription = _numbers.subscription(number);
        counts[number] = subscription ? subscription->numberOfSubscribers() : 0;
    }
    return counts;
}

void SubscriptionMethods::unsubscribe(NamedSubscriber& leaving, const Parameters& parameters)
{
    const auto given = parameters.choice({ "path", "url", "id", "subscription" });
    if (given == "path")
        manager().unsubscribeForPath(&leaving, parameters.text(given));
    else if (given == "url")
        manager().unsubscribeForURL(&leaving, parameters.url(given));
    else if (given == "id")
        manager().unsubscribeForFile(&leaving, parameters.item(given).get());
    else if (given == "subscription")
        manager().unsubscribeForSubscription(&leaving, &subscriptionOf(parameters));
    else
        manager().unsubscribe(&leaving);
}

JSON SubscriptionMethods::subscription(const Parameters& parameters) const
{
    const auto& subscription = subscriptionOf(parameters);
    const auto* path = subscription.path();
    const auto files = subscription.files();
    return {
        { "url", jsonOfURL(subscription.url()) },
        { "path", path ? JSON(validText(*path)) : JSON() },
        { "isValid", subscription.isValid() },
        { "isLoading", subscription.isLoading() },
        { "numberOfSubscribers", subscription.numberOfSubscribers() },
        { "files", jsonOfItems(*files) },
        { "directoryFile", jsonOfItem(subscription.directoryFile()) },
        { "description", subscription.description() },
    };
}

JSON SubscriptionMethods::subscriptions()
{
    auto result = JSON::array();
    for (auto* subscription : manager().subscriptions())
        result.push_back(_numbers.number(*subscription));
    return result;
}

NamedSubscriber& SubscriptionMethods::subscriber(const std::string& name)
{
    auto& found = _subscribers[name];
    if (!found)
        found = zef::makeRef<NamedSubscriber>(name, _numbers);
    return *found;
}

void SubscriptionMethods::forgetIdle(const std::string& name)
{
    const auto found = _subscribers.find(name);
    if (found != _subscribers.end() && found->second->subscriptions.empty())
        _subscribers.erase(found);
}

ZEFDirectorySubscription& SubscriptionMethods::subscriptionOf(const Parameters& parameters) const
{
    const auto number = parameters.number("subscription");
    auto* subscription = _numbers.subscription(number);
    if (!subscription)
        Parameters::refuse("there is no subscription " + std::to_string(number));
    return *subscription;
}

} // namespace tool

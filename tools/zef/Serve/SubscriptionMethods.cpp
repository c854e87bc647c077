// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/Serve/Methods.h"
#include "tools/zef/Serve/RPCError.h"

namespace tool {
namespace {

ZEFFileManager& manager()
{
    return *ZEFFileManager::defaultFileManager();
}

ZEFDirectorySubscription& subscriptionOf(const Parameters& parameters, const Subscribers& all)
{
    const auto number = parameters.number("subscription");
    auto* subscription = all.subscription(number);
    if (!subscription)
        Parameters::refuse("there is no subscription " + std::to_string(number));
    return *subscription;
}

// Null when there is nothing to subscribe to.
ZEFDirectorySubscription* subscribe(
    Subscribers& all, const std::string& name, const Parameters& parameters)
{
    const auto given = parameters.choice({ "path", "url", "id" });
    if (given.empty())
        Parameters::refuse("path, url or id is missing");
    if (given == "path") {
        const auto path = parameters.text(given);
        return manager().subscribeForPath(all.subscriber(name).get(), path);
    }
    if (given == "url") {
        const auto url = parameters.url(given);
        return manager().subscribeForURL(all.subscriber(name).get(), url);
    }
    const auto item = parameters.item(given);
    return manager().subscribeForFile(all.subscriber(name).get(), item.get());
}

JSON subscribe(Subscribers& all, const Parameters& parameters)
{
    const auto name = parameters.text("subscriber");
    auto* made = subscribe(all, name, parameters);
    if (!made) {
        all.forgetIdle(name);
        return nullptr;
    }
    const auto number = all.number(*made);
    all.subscriptions(name).insert(number);
    return JSONObject()
        .add("subscription", number)
        .add("url", jsonOfURL(made->url()))
        .add("isLoading", made->isLoading());
}

void unsubscribe(ZEFObject* leaving, const Subscribers& all, const Parameters& parameters)
{
    const auto given = parameters.choice({ "path", "url", "id", "subscription" });
    if (given == "path")
        manager().unsubscribeForPath(leaving, parameters.text(given));
    else if (given == "url")
        manager().unsubscribeForURL(leaving, parameters.url(given));
    else if (given == "id")
        manager().unsubscribeForFile(leaving, parameters.item(given).get());
    else if (given == "subscription")
        manager().unsubscribeForSubscription(leaving, &subscriptionOf(parameters, all));
    else
        manager().unsubscribe(leaving);
}

std::map<std::uint64_t, std::int32_t> subscriberCounts(
    const Subscribers& all, const std::set<std::uint64_t>& numbers)
{
    std::map<std::uint64_t, std::int32_t> counts;
    for (const auto number : numbers) {
        const auto* subscription = all.subscription(number);
        counts[number] = subscription ? subscription->numberOfSubscribers() : 0;
    }
    return counts;
}

JSON unsubscribe(Subscribers& all, const Parameters& parameters)
{
    const auto name = parameters.text("subscriber");
    // Also a subscriber that was never heard of unsubscribes: that has effects of its own.
    const auto leaving = all.subscriber(name);
    auto& numbers = all.subscriptions(name);
    const auto before = subscriberCounts(all, numbers);
    try {
        unsubscribe(leaving.get(), all, parameters);
    } catch (const RPCError&) {
        all.forgetIdle(name);
        throw;
    }
    for (const auto& [number, count] : subscriberCounts(all, numbers)) {
        if (count < before.at(number))
            numbers.erase(number);
    }
    all.forgetIdle(name);
    return true;
}

JSON describe(const ZEFDirectorySubscription& subscription)
{
    const auto* path = subscription.path();
    const auto files = subscription.files();
    return JSONObject()
        .add("url", jsonOfURL(subscription.url()))
        .add("path", path ? JSON(*path) : JSON())
        .add("isValid", subscription.isValid())
        .add("isLoading", subscription.isLoading())
        .add("numberOfSubscribers", subscription.numberOfSubscribers())
        .add("files", jsonOfItems(*files))
        .add("directoryFile", jsonOfItem(subscription.directoryFile()))
        .add("description", subscription.description());
}

} // namespace

void addSubscriptionMethods(MethodTable& table, Session& session)
{
    auto& all = session.subscribers;
    table.add("subscribe", { "subscriber", "path", "url", "id" },
        [&](const Parameters& parameters) { return subscribe(all, parameters); });
    table.add("unsubscribe", { "subscriber", "path", "url", "id", "subscription" },
        [&](const Parameters& parameters) { return unsubscribe(all, parameters); });
    table.add("checkDirectory", { "subscription" }, [&](const Parameters& parameters) {
        subscriptionOf(parameters, all).checkDirectory();
        return true;
    });
    table.add("loadImmediately", { "subscription" }, [&](const Parameters& parameters) {
        subscriptionOf(parameters, all).loadImmediately();
        return true;
    });
    table.add("subscription", { "subscription" },
        [&](const Parameters& parameters) { return describe(subscriptionOf(parameters, all)); });
    table.add("subscriptions", {}, [&](const Parameters&) {
        JSONArray numbers;
        for (auto* subscription : manager().subscriptions())
            numbers.add(all.number(*subscription));
        return numbers;
    });
}

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/MethodTable.h"
#include "tools/zef/Serve/NamedSubscriber.h"
#include "tools/zef/Serve/SubscriptionNumbers.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace tool {

/// The methods about watched folders, and the subscribers that clients name.
class SubscriptionMethods {
public:
    /// The table must not outlive this object.
    void addTo(MethodTable&);

    /// Forgets what the file manager has dropped. To be called after each turn of the run loop.
    void forgetDropped();
    /// Lets go of every subscription; to be called before the file manager is shut down.
    void forgetAll();

private:
    void addSubscribing(MethodTable&);
    void addQuestions(MethodTable&);

    JSON subscribe(const Parameters&);
    ZEFDirectorySubscription* subscribe(
        const std::string& name, const Parameters&, const std::string& given);
    JSON unsubscribe(const Parameters&);
    void unsubscribe(NamedSubscriber&, const Parameters&);
    std::map<std::uint64_t, std::int32_t> subscriberCounts(
        const std::set<std::uint64_t>& numbers) const;
    JSON subscription(const Parameters&) const;
    JSON subscriptions();

    NamedSubscriber& subscriber(const std::string& name);
    void forgetIdle(const std::string& name);
    ZEFDirectorySubscription& subscriptionOf(const Parameters&) const;

    SubscriptionNumbers _numbers;
    /// Those that are subscribed to something: nobody else keeps them alive.
    std::map<std::string, zef::Ref<NamedSubscriber>> _subscribers;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>

namespace tool {

/// The subscribers that a client knows by names, and the numbers of the subscriptions that the file
/// manager keeps. What a subscriber is told is passed on as a notification.
class Subscribers {
public:
    /// A number that no other subscription ever had.
    std::uint64_t number(ZEFDirectorySubscription&);
    /// The subscription, borrowed; null when the manager has dropped it or never had it.
    ZEFDirectorySubscription* subscription(std::uint64_t number) const;

    /// The subscriber, which is made when there is none of this name.
    zef::Ref<ZEFObject> subscriber(const std::string& name);
    /// The numbers of the subscriptions that it is subscribed to. Valid until `forgetIdle`.
    std::set<std::uint64_t>& subscriptions(const std::string& name);
    /// Forgets a subscriber without subscriptions: nobody else keeps it alive.
    void forgetIdle(const std::string& name);

    /// Forgets what the file manager has dropped. To be called after each turn of the run loop.
    void forgetDropped();
    /// Lets go of every subscription; to be called before the file manager is shut down.
    void forgetSubscriptions();

private:
    class Named;

    struct Subscriber {
        zef::Ref<ZEFObject> object;
        std::set<std::uint64_t> subscriptions;
    };

    Subscriber& find(const std::string& name);

    std::uint64_t _lastNumber = 0;
    /// Subscriptions that the manager has dropped live until they are forgotten, so that no new one
    /// can have the place in memory of one that has a number.
    std::map<std::uint64_t, zef::Ref<ZEFDirectorySubscription>> _subscriptions;
    std::unordered_map<const ZEFDirectorySubscription*, std::uint64_t> _numbers;
    std::map<std::string, Subscriber> _subscribers;
};

} // namespace tool

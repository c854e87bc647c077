// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/SubscriptionNumbers.h"

#include <set>
#include <string>

namespace tool {

/// A subscriber that a client knows by a name; it passes on what it is told as a notification.
class NamedSubscriber final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    /// `numbers` is borrowed.
    NamedSubscriber(std::string name, SubscriptionNumbers& numbers);

    void directorySubscriptionFoundChanges(ZEFDirectorySubscription*, ZEFChangeArray*) override;

    /// The numbers of the subscriptions that it is subscribed to.
    std::set<std::uint64_t> subscriptions;

private:
    ~NamedSubscriber() override;

    std::string _name;
    SubscriptionNumbers& _numbers;
};

} // namespace tool

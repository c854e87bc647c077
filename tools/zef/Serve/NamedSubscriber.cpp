// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/NamedSubscriber.h"

#include "tools/zef/Serve/Message.h"

namespace tool {

NamedSubscriber::NamedSubscriber(std::string name, SubscriptionNumbers& numbers)
    : _name(std::move(name))
    , _numbers(numbers)
{
}

NamedSubscriber::~NamedSubscriber() = default;

void NamedSubscriber::directorySubscriptionFoundChanges(
    ZEFDirectorySubscription* subscription, ZEFChangeArray* changes)
{
    sendNotification("directorySubscription.foundChanges",
        {
            { "subscriber", _name },
            { "subscription", _numbers.number(*subscription) },
            { "changes", jsonOfChanges(*changes) },
        });
}

} // namespace tool

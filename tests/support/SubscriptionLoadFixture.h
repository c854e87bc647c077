// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/SubscriptionFixture.h"
#include "tests/support/ZEFDirectorySubscriptionTestAccess.h"

#include <cstddef>
#include <vector>

/// A subscription that loads in the background. The load waits at the gate before each batch of 40
/// files.
class SubscriptionLoadFixture : public SubscriptionFixture {
protected:
    ~SubscriptionLoadFixture() override
    {
        // Else the load would outlive its subscription.
        ReportingItem::hook = nullptr;
        subscriber.action = nullptr;
        finishLoad();
        if (subscription)
            subscription->loadImmediately();
    }

    /// Begins a load, which comes to the gate.
    void begin()
    {
        holdReaders();
        subscription = watchInBackground(&subscriber);
        gate.awaitArrival();
    }

    /// Lets the loader read one batch and hand it over.
    void loadBatch()
    {
        gate.letOneThrough();
        gate.awaitArrival();
    }

    /// Lets the loader come to its end.
    void finishLoad()
    {
        gate.open();
        waitForLoads();
    }

    /// The number of changes in each notification.
    std::vector<std::size_t> sizes() const
    {
        std::vector<std::size_t> all;
        for (const auto& call : subscriber.calls)
            all.push_back(call.changes->count());
        return all;
    }

    RecordingSubscriber& subscriber = newSubscriber();
    zef::Ref<ZEFDirectorySubscription> subscription;
};

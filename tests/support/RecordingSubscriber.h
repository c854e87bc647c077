// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChangeWords.h"

#include <functional>
#include <vector>

/// A subscriber that remembers its calls.
class RecordingSubscriber final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    struct Call {
        ZEFDirectorySubscription* subscription;
        zef::Ref<ZEFChangeArray> changes;
        /// The changes in words, as they were when the subscriber was called.
        Words words;
    };

    /// What the subscriber does when it is called.
    std::function<void()> action;

    std::vector<Call> calls;

    /// The changes of every call, in words.
    std::vector<Words> words() const
    {
        std::vector<Words> all;
        for (const auto& call : calls)
            all.push_back(call.words);
        return all;
    }

    void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription* subscription, ZEFChangeArray* changes) override
    {
        calls.push_back({ subscription, changes, inWords(*changes) });
        // The action may replace itself.
        if (const auto current = action)
            current();
    }
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/LoopFixture.h"

#include <string_view>

/// Subscriptions that no file manager keeps.
class SubscriptionFixture : public LoopFixture {
protected:
    /// A subscription that has listed its folder.
    zef::Ref<ZEFDirectorySubscription> watch(
        ZEFObject* subscriber = nullptr, std::string_view name = "watched")
    {
        return ZEFDirectorySubscription::initForSubscriber(subscriber, item(name).get());
    }

    /// A subscription whose folder is being listed in the background.
    zef::Ref<ZEFDirectorySubscription> watchInBackground(
        ZEFObject* subscriber = nullptr, std::string_view name = "watched")
    {
        return ZEFDirectorySubscription::initForSubscriber(subscriber, item(name).get(), true);
    }

    /// The changes that a check finds, in words; empty if it finds none.
    static Words check(ZEFDirectorySubscription& subscription)
    {
        zef::Ref<ZEFChangeArray> changes;
        subscription.checkDirectory(changes);
        if (!changes)
            return {};
        EXPECT_GT(changes->count(), 0u);
        return inWords(*changes);
    }

    /// Waits until what is on the file manager's queue has been done.
    static void waitForLoads()
    {
        auto* queue = ZEFFileManager::defaultFileManager()->operationQueue();
        queue->waitUntilAllOperationsAreFinished();
    }
};

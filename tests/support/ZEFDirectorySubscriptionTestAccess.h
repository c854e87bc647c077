// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionState.h"

/// What only tests may see of a subscription. Borrowed; null while no background load runs.
class ZEFDirectorySubscriptionTestAccess {
public:
    static ZEFFileLoadOperation* loadOperation(const ZEFDirectorySubscription& subscription)
    {
        return subscription._state->load.operation();
    }

    static zef::Timer* loadTimer(const ZEFDirectorySubscription& subscription)
    {
        return subscription._state->load._asyncLoadingCheckTimer.get();
    }
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

/// What only tests may see of a subscription. Borrowed; nil while no background load runs.
class ZEFDirectorySubscriptionTestAccess {
public:
    static ZEFFileLoadOperation* loadOperation(const ZEFDirectorySubscription& subscription)
    {
        return subscription._currentLoadOperation.get();
    }

    static zef::Timer* loadTimer(const ZEFDirectorySubscription& subscription)
    {
        return subscription._asyncLoadingCheckTimer.get();
    }
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFChangeArray.h"

#include <cassert>

class ZEFDirectorySubscription;

/// The protocol of subscribers. A subscriber is a `ZEFObject` that also inherits from this class;
/// it is never retained: unsubscribe it before it dies.
class ZEF_EXPORT ZEFDirectorySubscriptionProtocol {
public:
    /// `changes` were found in the folder of `subscription`; both are borrowed. Called on the
    /// thread that polls. May subscribe, unsubscribe and ask for anything.
    virtual void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription* subscription, ZEFChangeArray* changes)
        = 0;

protected:
    virtual ~ZEFDirectorySubscriptionProtocol() { assert(!_subscriptions); }

private:
    friend class ZEFSubscriberTable;

    int _subscriptions = 0;
};

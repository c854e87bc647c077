// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionProtocol.h"

#include <memory>

namespace zef {
class Timer;
}

/// Called by the timer of a background load; sends the subscription `ZEF_checkAsyncLoadingQueue`.
ZEF_EXPORT void ZEFAsynchronousLoadingTimerCallback(zef::Timer*, ZEFDirectorySubscription*);

/// Watches the contents of one folder for its subscribers.
///
/// Belongs to the thread that made it, whose run loop drives its background load; debug builds
/// assert it. Subscribers are called on that thread, synchronously; they are not retained and don't
/// keep the subscription alive.
class ZEF_EXPORT ZEFDirectorySubscription final : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    /// Watches the folder of `file` and loads its contents, in the background if `asynchronous`.
    /// The subscriber may be null. Null, and one line in the log, if `file` is null, lost or not a
    /// folder.
    static zef::Ref<ZEFDirectorySubscription> initForSubscriber(ZEFObject* subscriber,
        ZEFFileItem* file, const ZEFFileItemClass* fileClass, bool asynchronous);
    /// The same with the class `ZEFFileItem`.
    static zef::Ref<ZEFDirectorySubscription> initForSubscriber(
        ZEFObject* subscriber, ZEFFileItem* file, bool asynchronous);
    /// The same, not in the background.
    static zef::Ref<ZEFDirectorySubscription> initForSubscriber(
        ZEFObject* subscriber, ZEFFileItem* file);

    /// Adds a subscriber, unless it is one already; ignores null and what doesn't conform to
    /// `ZEFDirectorySubscriptionProtocol`.
    void subscribe(ZEFObject* subscriber);
    /// Removes a subscriber (null: none) and returns how many are left.
    std::int32_t unsubscribe(ZEFObject* subscriber);
    /// How many subscribers there are now.
    std::int32_t numberOfSubscribers() const;
    /// Calls each subscriber that is still one when its turn comes.
    void notifySubscribers(ZEFChangeArray* changes);

    /// The items now known to be in the folder, in the order in which they were found; a new array.
    zef::Ref<zef::Array<ZEFFileItem>> files() const;
    /// The folder's path as its item last saw it; null if the folder is lost. Borrowed.
    const std::string* path() const;
    /// The folder's URL as this subscription last reported it; the two can differ for a while.
    zef::FileURL url() const;
    /// False for good once the folder was found removed.
    bool isValid() const;
    /// Whether a background load runs.
    bool isLoading() const;
    /// The folder's item, borrowed; null if it is lost.
    ZEFFileItem* directoryFile() const;
    std::string description() const override;

    /// Looks for changes and notifies the subscribers if there are any; does nothing while a load
    /// runs.
    void checkDirectory();
    /// Looks for changes. `changes` is set to null or to an array that holds at least one.
    void checkDirectory(zef::Ref<ZEFChangeArray>& changes);
    /// Ends a background load at once by listing the folder here and now; the subscribers get one
    /// notification, perhaps with an empty array. Does nothing if no load runs.
    void loadImmediately();

    // For the library.

    void ZEF_setURL(const zef::FileURL&);
    /// Lists the folder for items that are not known yet and adds their records to `changes` (may
    /// be null); asynchronously by a background load, which reports them itself.
    void ZEF_scanDirectoryForUpdatedFiles(ZEFChangeArray* changes, bool asynchronously);
    /// Takes in what the background load has found so far, and closes the load when it has ended.
    void ZEF_checkAsyncLoadingQueue();

private:
    friend class ZEFDirectorySubscriptionTestAccess;
    class Check;
    struct State;

    ZEFDirectorySubscription(ZEFObject* subscriber, ZEFFileItem& file,
        const ZEFFileItemClass* fileClass, bool asynchronous);
    ~ZEFDirectorySubscription() override;

    /// Asserts that the caller is on the subscription's thread.
    State& state() const;
    void notifyOfCheck();

    std::unique_ptr<State> _state;
};

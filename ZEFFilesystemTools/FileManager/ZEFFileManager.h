// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Objects/Array.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashRefusal.h"

#include <memory>

class ZEFDirectorySubscription;

namespace zef {
class OperationQueue;
class Timer;
} // namespace zef

/// The one object of the process that keeps a subscription for each watched folder, polls them all
/// on a timer and owns the queues for background work.
///
/// It can't be copied or freed. Use it on one thread, whose run loop carries its timers; debug
/// builds assert that this is the thread that first used it, where nothing else is said.
/// Subscribers are called on that thread. After `shutdown` it watches nothing and has no queues.
class ZEF_EXPORT ZEFFileManager final : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    /// The one file manager, borrowed; made at the first call. Any thread.
    static ZEFFileManager* defaultFileManager();
    /// Makes the one file manager if there is none yet; null at every later call. Any thread.
    static ZEFFileManager* alloc();
    /// The one file manager. Any thread.
    ZEFFileManager* init();
    /// The manager itself. Any thread.
    zef::Ref<ZEFObject> copy() override;

    /// Stops polling, waits for the work that runs on the queues (work that has not begun never
    /// will), and lets go of every subscription. A second call does nothing.
    void shutdown();

    /// The class that makes items from paths and URLs; `ZEFFileItem` at first. May be null.
    const ZEFFileItemClass* fileClass() const;
    /// False, and no change, once somebody has subscribed or unsubscribed.
    bool setFileClass(const ZEFFileItemClass*);

    /// For loads; at most 64 at once. Borrowed. Any thread until `shutdown`.
    zef::OperationQueue* operationQueue() const;
    /// For the host's own work; at most four operations for each processor at once. Borrowed. Any
    /// thread until `shutdown`.
    zef::OperationQueue* utilityQueue() const;

    // File tracking. Subscribers are never retained. Results are borrowed.

    /// The subscription of the folder, shared by all its subscribers; null if there can't be one,
    /// as for a link to a folder.
    ZEFDirectorySubscription* subscribeForFile(ZEFObject* subscriber, ZEFFileItem* file);
    ZEFDirectorySubscription* subscribeForPath(ZEFObject* subscriber, std::string_view path);
    ZEFDirectorySubscription* subscribeForURL(ZEFObject* subscriber, const zef::FileURL& url);

    /// The subscription is dropped 30 seconds after its last subscriber has left, or with the next
    /// pass of the run loop when its folder is gone.
    void unsubscribeForFile(ZEFObject* subscriber, ZEFFileItem* file);
    void unsubscribeForPath(ZEFObject* subscriber, std::string_view path);
    void unsubscribeForURL(ZEFObject* subscriber, const zef::FileURL& url);
    void unsubscribeForSubscription(ZEFObject* subscriber, ZEFDirectorySubscription*);
    /// From every kept subscription.
    void unsubscribe(ZEFObject* subscriber);

    /// The kept subscription of the folder, or null.
    ZEFDirectorySubscription* subscriptionForFile(const ZEFFileItem* file) const;
    /// Every kept subscription in the order of creation, borrowed; a new array.
    std::vector<ZEFDirectorySubscription*> subscriptions() const;

    /// False, and no change, once somebody has subscribed.
    bool setAsynchronous(bool);
    /// Whether new subscriptions load their folders in the background; false at first.
    bool asynchronous() const;

    /// Seconds between two polls, the next of which is that far away then; kept as a 32-bit float.
    void setPollingInterval(double seconds);
    /// 3.0 at first.
    float pollingInterval() const;

    /// While paused the timer doesn't poll.
    void setPaused(bool);
    /// Whether the timer is kept from polling; false at first.
    bool isPaused() const;
    void pause() { setPaused(true); }
    void unPause() { setPaused(false); }

    /// One poll, also while paused: every kept subscription is asked first, then the subscribers of
    /// those that found something are called. Throws `zef::MutationError` when a hook of a file
    /// item changes the list of subscriptions during the first half.
    void checkFilesystem(ZEFObject* sender);

    // File operations, on the calling thread.

    /// Moves the files to the trash, all or none, then waits 0.3 seconds and polls once, also while
    /// paused. False, and nothing of that, if it can't be done; `lastTrashRefusal` says why. Null
    /// and an empty array are fine.
    bool moveFilesToTrash(const zef::Array<ZEFFileItem>* files);
    /// What stood in the way of the last request; empty if nothing did.
    const zef::TrashRefusal& lastTrashRefusal() const;

    /// The contents of the folder, listed before it returns; a new array. Of a watched folder those
    /// that its subscription knows, whose subscribers hear of it if that was still loading. Null,
    /// and one line in the log, if `directory` is null, lost or not a folder.
    zef::Ref<zef::Array<ZEFFileItem>> filesInDirectory(ZEFFileItem* directory);

    // For the library.

    /// The move alone.
    bool ZEF_moveFilesToTrash(const zef::Array<ZEFFileItem>* files);
    void ZEF_makeTimer();
    void ZEF_killTimer();
    void _removeSubscriptionTimerAction(zef::Timer&, ZEFDirectorySubscription&);

private:
    friend class ZEFFileManagerTestAccess;
    struct State;

    ZEFFileManager();
    ~ZEFFileManager() override;

    /// For tests: shuts the one file manager down and ends its life, so that the next is a new one.
    static void forgetInstance();

    /// Asserts that the caller is on the manager's thread.
    State& state() const;
    void scheduleRelease(ZEFDirectorySubscription&);
    ZEFDirectorySubscription* makeSubscription(ZEFObject* subscriber, ZEFFileItem& file);

    std::unique_ptr<State> _state;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Objects/Array.h"
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashRefusal.h"

#include <memory>

class ZEFDirectorySubscription;

namespace zef {
class OperationQueue;
}

/// The one object of the process that keeps a subscription for each watched folder, polls them all
/// on a timer and owns the queues for background work.
///
/// It can't be copied or freed. Use it on one thread: the one whose run loop carries its timers,
/// which is the thread that first subscribes, ends a pause or changes the interval. Subscribers are
/// called on that thread. After `shutdown` it watches nothing and has no queues.
class ZEF_EXPORT ZEFFileManager final : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    /// The one file manager, borrowed; made at the first call. Any thread.
    static ZEFFileManager* defaultFileManager();
    /// Makes the one file manager if there is none yet; nil at every later call. Any thread.
    static ZEFFileManager* alloc();
    /// The one file manager.
    ZEFFileManager* init();
    /// The manager itself.
    zef::Ref<ZEFObject> copy() override;

    /// Stops polling, waits for the work that runs on the queues (work that has not begun never
    /// will), and lets go of every subscription. A second call does nothing.
    void shutdown();

    /// The class that makes items from paths and URLs; `ZEFFileItem` at first. May be nil.
    const ZEFFileItemClass* fileClass() const { return _fileClass; }
    /// NO, and no change, once somebody has subscribed or unsubscribed.
    bool setFileClass(const ZEFFileItemClass*);

    /// For loads; at most 64 at once. Borrowed.
    zef::OperationQueue* operationQueue() const;
    /// For the host's own work; at most four operations for each processor at once. Borrowed.
    zef::OperationQueue* utilityQueue() const { return _utilityQueue.get(); }

    // File tracking. Subscribers are never retained. Results are borrowed.

    /// The subscription of the folder, shared by all its subscribers; nil when there can be none,
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

    /// The kept subscription of the folder, or nil.
    ZEFDirectorySubscription* subscriptionForFile(const ZEFFileItem* file) const;
    /// Every kept subscription in the order of creation, borrowed; a new array.
    std::vector<ZEFDirectorySubscription*> subscriptions() const;

    /// NO, and no change, once somebody has subscribed.
    bool setAsynchronous(bool);
    /// Whether new subscriptions load their folders in the background; NO at first.
    bool asynchronous() const { return _asynchronous; }

    /// Seconds between two polls, the next of which is that far away then; kept as a 32-bit float.
    void setPollingInterval(double seconds);
    /// 3.0 at first.
    float pollingInterval() const { return _pollingInterval; }

    /// While paused the timer doesn't poll.
    void setPaused(bool);
    /// Whether the timer is kept from polling; NO at first.
    bool isPaused() const { return _paused; }
    void pause() { setPaused(true); }
    void unPause() { setPaused(false); }

    /// One poll, also while paused: every kept subscription is asked first, then the subscribers of
    /// those that found something are called. Throws `zef::MutationError` when a hook of a file
    /// item changes the list of subscriptions during the first half.
    void checkFilesystem(ZEFObject* sender);

    // File operations, on the calling thread.

    /// Moves the files to the trash, all or none, then waits 0.3 seconds and polls once, also while
    /// paused. NO, and nothing of that, when it can't be done; `lastTrashRefusal` says why. Nil and
    /// an empty array are fine.
    bool moveFilesToTrash(const zef::Array<ZEFFileItem>* files);
    /// What stood in the way of the last request; empty when nothing did.
    const zef::TrashRefusal& lastTrashRefusal() const { return _trashRefusal; }

    /// The contents of the folder, listed before it returns; a new array. Of a watched folder those
    /// that its subscription knows, whose subscribers hear of it when that was still loading. Nil,
    /// and one line in the log, when `directory` is nil, lost or no folder.
    zef::Ref<zef::Array<ZEFFileItem>> filesInDirectory(ZEFFileItem* directory);

    // For the library.

    /// The move alone.
    bool ZEF_moveFilesToTrash(const zef::Array<ZEFFileItem>* files);
    void ZEF_makeTimer();
    void ZEF_killTimer();
    void _removeSubscriptionTimerAction(zef::Timer&, ZEFDirectorySubscription&);

private:
    friend class ZEFFileManagerTestAccess;
    class Directories;

    ZEFFileManager();
    ~ZEFFileManager() override;

    /// For tests: shuts the one file manager down and ends its life, so that the next is a new one.
    static void forgetInstance();

    void scheduleRelease(ZEFDirectorySubscription&);
    ZEFDirectorySubscription* makeSubscription(ZEFObject* subscriber, ZEFFileItem& file);

    zef::Ref<zef::OperationQueue> _utilityQueue;
    /// Kept alive by the run loop while it is valid.
    zef::Ref<zef::Timer> _timer;
    std::unique_ptr<Directories> _directories;
    zef::Ref<zef::Array<zef::Timer>> _removedDirectoriesReleaseTimers;
    const ZEFFileItemClass* _fileClass = &ZEFFileItem::classObject;
    bool _asynchronous = false;
    bool _madeFiles = false;
    bool _hadSubscribers = false;
    float _pollingInterval = 3.0F;
    bool _paused = false;
    bool _isShutDown = false;
    zef::TrashRefusal _trashRefusal;
};

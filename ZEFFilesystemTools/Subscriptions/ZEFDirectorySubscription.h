// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Objects/OrderedSet.h"
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionProtocol.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFSubscriberTable.h"

class ZEFDirectorySubscription;

/// Called by the timer of a background load; sends the subscription `ZEF_checkAsyncLoadingQueue`.
ZEF_EXPORT void ZEFAsynchronousLoadingTimerCallback(zef::Timer*, ZEFDirectorySubscription*);

/// Watches the contents of one folder for its subscribers.
///
/// Belongs to one thread, whose run loop drives its background load. Subscribers are called on that
/// thread, synchronously; they are not retained and don't keep the subscription alive.
class ZEF_EXPORT ZEFDirectorySubscription final : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    /// Watches the folder of `file` and loads its contents, in the background if `asynchronous`.
    /// The subscriber may be nil. Nil, and one line in the log, when `file` is nil, lost or no
    /// folder.
    static zef::Ref<ZEFDirectorySubscription> initForSubscriber(ZEFObject* subscriber,
        ZEFFileItem* file, const ZEFFileItemClass* fileClass, bool asynchronous);
    /// The same with the class `ZEFFileItem`.
    static zef::Ref<ZEFDirectorySubscription> initForSubscriber(
        ZEFObject* subscriber, ZEFFileItem* file, bool asynchronous);
    /// The same, not in the background.
    static zef::Ref<ZEFDirectorySubscription> initForSubscriber(
        ZEFObject* subscriber, ZEFFileItem* file);

    /// Adds a subscriber, unless it is one already; ignores nil and what doesn't conform to
    /// `ZEFDirectorySubscriptionProtocol`.
    void subscribe(ZEFObject* subscriber);
    /// Removes a subscriber (nil: none) and returns how many are left.
    std::int32_t unsubscribe(ZEFObject* subscriber);
    /// How many subscribers there are now.
    std::int32_t numberOfSubscribers() const;
    /// Calls each subscriber that is still one when its turn comes.
    void notifySubscribers(ZEFChangeArray* changes);

    /// The items now known to be in the folder, in the order in which they were found; a new array.
    zef::Ref<ZEFFileItemArray> files() const;
    /// The folder's path as its item last saw it; nil when the folder is lost. Borrowed.
    const std::string* path() const;
    /// The folder's URL as this subscription last reported it; the two can differ for a while.
    zef::FileURL url() const { return _lastKnownURL; }
    /// NO for good once the folder was found removed.
    bool isValid() const { return _shouldCheck; }
    /// Whether a background load runs.
    bool isLoading() const { return static_cast<bool>(_currentLoadOperation); }
    /// The folder's item, borrowed; nil when it is lost.
    ZEFFileItem* directoryFile() const;
    std::string description() const override;

    /// Looks for changes and tells the subscribers if there are any; nothing while a load runs.
    void checkDirectory();
    /// Looks for changes. `changes` is set to nil or to an array that holds at least one.
    void checkDirectory(zef::Ref<ZEFChangeArray>& changes);
    /// Ends a background load at once by listing the folder here and now; the subscribers get one
    /// notification, perhaps with an empty array. Nothing when no load runs.
    void loadImmediately();

    // For the library.

    void ZEF_setURL(const zef::FileURL&);
    /// Lists the folder for items that are not known yet and adds their records to `changes` (may
    /// be nil); asynchronously by a background load, which reports them itself.
    void ZEF_scanDirectoryForUpdatedFiles(ZEFChangeArray* changes, bool asynchronously);
    /// Takes in what the background load has found so far, and closes the load when it has ended.
    void ZEF_checkAsyncLoadingQueue();

private:
    friend class ZEFDirectorySubscriptionTestAccess;
    class Check;
    class KnownItems;

    ZEFDirectorySubscription(ZEFObject* subscriber, ZEFFileItem& file,
        const ZEFFileItemClass* fileClass, bool asynchronous);
    ~ZEFDirectorySubscription() override;

    /// How a listing on this thread ended, and what it found beside the entries that are known
    /// well.
    struct Listing {
        zef::FileError result = zef::FileError::none;
        std::vector<zef::Ref<ZEFFileItem>> items;
    };

    void loadInBackground();
    void listNow(ZEFChangeArray* changes, Listing&, std::unique_ptr<zef::CatalogIterator> entries);
    void takeInListed(ZEFFileItem&, ZEFChangeArray* changes);
    void takeIn(const std::vector<zef::Ref<ZEFFileItem>>&);
    static void takeIn(const std::vector<ZEFFileLoadOperation::Sighting>&);
    static void reportAppeared(ZEFFileItem&, ZEFChangeArray&);
    void closeLoad();
    void notifyOfCheck();
    void forgetItem(ZEFFileItem&);
    void keepReferencesSoon();
    void keepSomeReferences();

    ZEFSubscriberTable _subscribers;
    zef::FileURL _lastKnownURL;
    zef::Ref<ZEFFileItem> _directoryFile;
    zef::OrderedSet<ZEFFileItem> _directoryInfo;
    zef::OrderedSet<ZEFFileItem> _directoryInfoDirectoriesOnly;
    zef::Ref<ZEFFileLoadOperation> _currentLoadOperation;
    zef::Ref<zef::Lock> _asyncLoadingLock;
    zef::Ref<zef::Timer> _asyncLoadingCheckTimer;
    zef::Ref<ZEFFileItemArray> _asyncLoadingQueue;
    bool _stopLoading = false;
    /// Kept for the subscription's life; the items are made by the class of the folder's own item.
    [[maybe_unused]] const ZEFFileItemClass* _fileClass;
    bool _asynchronous;
    bool _checkDirContents = false;
    bool _shouldCheck = true;
    /// Up to which index the known items keep references to their files.
    std::size_t _referencesKept = 0;
    zef::Ref<zef::Timer> _referenceTimer;
};

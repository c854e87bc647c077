// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"
#include "ZEFFilesystemTools/Loading/ZEFLoadQueue.h"
#include "ZEFFilesystemTools/Platform/Objects/FirstException.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>

namespace {

constexpr double firstDrainDelay = 0.1;
constexpr double drainInterval = 0.5;

// How many new items keep references to their files at once; the rest follow in slices.
constexpr std::size_t referencesKeptAtOnce = 512;
constexpr double referenceSlice = 0.002;
constexpr double referenceInterval = 0.01;

} // namespace

// Knows the entries that the check has just looked at one by one, so that listing the folder again
// needs no second look at them. The listing mostly has the order in which they became known, so
// the walk's next item is tried before the whole set.
class ZEF_INTERNAL ZEFDirectorySubscription::KnownItems final : public zef::KnownEntries {
public:
    explicit KnownItems(const ZEFDirectorySubscription& subscription)
        : _items(subscription._directoryInfo)
        , _directoryFile(*subscription._directoryFile)
        , _folder(_directoryFile.url())
    {
    }

    bool isKnown(std::string_view name, std::uint64_t inode) override
    {
        if (nextItemHasNumber(inode))
            return isEntry(*_items.objectAtIndex(_next++), name);
        const auto registered = ZEFFileRegistry::item(_directoryFile.fileDeviceNumber(), inode);
        const auto index = _items.indexOf(registered.get());
        if (index == _items.endIndex())
            return false;
        _next = index + 1;
        return isEntry(*registered, name);
    }

private:
    bool nextItemHasNumber(std::uint64_t inode)
    {
        while (_next < _items.endIndex() && !_items.objectAtIndex(_next))
            ++_next;
        return _next < _items.endIndex() && _items.objectAtIndex(_next)->fileiNode() == inode;
    }

    bool isEntry(const ZEFFileItem& item, std::string_view name) const
    {
        const auto url = item.url();
        return item.isValid() && url.name() == name && url.isDirectlyIn(_folder);
    }

    const zef::OrderedSet<ZEFFileItem>& _items;
    const ZEFFileItem& _directoryFile;
    zef::FileURL _folder;
    std::size_t _next = 0;
};

void ZEFAsynchronousLoadingTimerCallback(zef::Timer*, ZEFDirectorySubscription* subscription)
{
    subscription->ZEF_checkAsyncLoadingQueue();
}

void ZEFDirectorySubscription::ZEF_scanDirectoryForUpdatedFiles(
    ZEFChangeArray* changes, bool asynchronously)
{
    if (asynchronously) {
        loadInBackground();
        return;
    }
    Listing listing;
    listNow(changes, listing, nullptr);
}

void ZEFDirectorySubscription::listNow(
    ZEFChangeArray* changes, Listing& listing, std::unique_ptr<zef::CatalogIterator> entries)
{
    auto operation = zef::makeRef<ZEFFileLoadOperation>();
    operation->setLoadingDirectory(_directoryFile);
    operation->setOpenedIterator(std::move(entries));
    KnownItems known(*this);
    operation->setKnownEntries(changes ? &known : nullptr);
    operation->start();
    listing.result = operation->listingResult();
    listing.items = operation->loadingArray()->takeAllObjects();
    takeIn(operation->takeSightings());
    zef::FirstException hookException;
    for (const auto& item : listing.items)
        hookException.guard([&] { takeInListed(*item, changes); });
    keepReferencesSoon();
    hookException.rethrow();
}

// An item may come into the folder before anybody has asked it where it is.
void ZEFDirectorySubscription::takeIn(const std::vector<ZEFFileLoadOperation::Sighting>& sightings)
{
    for (const auto& sighting : sightings)
        sighting.item->ZEF_seenAtURL(sighting.url);
}

void ZEFDirectorySubscription::takeInListed(ZEFFileItem& item, ZEFChangeArray* changes)
{
    if (!_directoryInfo.insert(&item))
        return;
    if (item.isBasicDirectory()) {
        if (!item.usingKQueue())
            item.initKQueue();
        _directoryInfoDirectoriesOnly.insert(&item);
    }
    if (changes)
        reportAppeared(item, *changes);
}

void ZEFDirectorySubscription::reportAppeared(ZEFFileItem& item, ZEFChangeArray& changes)
{
    auto record = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::appeared, &item);
    changes.addObject(record);
    item.eventOccurred(record.get());
}

void ZEFDirectorySubscription::loadInBackground()
{
    auto operation = zef::makeRef<ZEFFileLoadOperation>();
    operation->setLoadingDirectory(_directoryFile);
    _asyncLoadingLock = operation->loadingArrayLock();
    _asyncLoadingQueue = operation->loadingArray();
    _currentLoadOperation = operation;
    operation->setQueuePriority(zef::QueuePriority::high);
    if (!_asyncLoadingCheckTimer) {
        _asyncLoadingCheckTimer = zef::makeRef<zef::Timer>(firstDrainDelay, drainInterval,
            zef::Repeats::yes,
            [this](zef::Timer& timer) { ZEFAsynchronousLoadingTimerCallback(&timer, this); });
        zef::RunLoop::current().addTimer(_asyncLoadingCheckTimer, zef::TimerModes::common);
    }
    if (const auto queue = ZEFLoadQueue::queue())
        queue->addOperation(std::move(operation));
}

void ZEFDirectorySubscription::ZEF_checkAsyncLoadingQueue()
{
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    const auto operation = _currentLoadOperation;
    if (!operation)
        return;
    if (_stopLoading) {
        operation->cancel();
        closeLoad();
        return;
    }
    // Never waits for the loader; the timer comes again.
    if (!_asyncLoadingLock->tryLock())
        return;
    const auto items = _asyncLoadingQueue->takeAllObjects();
    const auto sightings = operation->takeSightings();
    _asyncLoadingLock->unlock();
    takeIn(sightings);
    takeIn(items);
    // A subscriber may have ended the load meanwhile.
    if (_currentLoadOperation != operation || !operation->isFinished())
        return;
    // Nobody else writes to the queue any more, so its rest needs no lock.
    takeIn(operation->takeSightings());
    takeIn(_asyncLoadingQueue->takeAllObjects());
    if (_currentLoadOperation != operation)
        return;
    closeLoad();
    notifyOfCheck();
}

void ZEFDirectorySubscription::takeIn(const std::vector<zef::Ref<ZEFFileItem>>& items)
{
    if (items.empty())
        return;
    auto batch = zef::makeRef<ZEFChangeArray>(items.size());
    zef::FirstException hookException;
    for (const auto& item : items) {
        _directoryInfo.insert(item.get());
        if (item->isBasicDirectory())
            _directoryInfoDirectoriesOnly.insert(item.get());
        hookException.guard([&] { reportAppeared(*item, *batch); });
    }
    keepReferencesSoon();
    hookException.guard([&] { notifySubscribers(batch.get()); });
    hookException.rethrow();
}

void ZEFDirectorySubscription::closeLoad()
{
    _asyncLoadingCheckTimer->invalidate();
    _asyncLoadingCheckTimer = nullptr;
    _asyncLoadingQueue = nullptr;
    _asyncLoadingLock = nullptr;
    _currentLoadOperation = nullptr;
    _checkDirContents = true;
}

void ZEFDirectorySubscription::keepReferencesSoon()
{
    // A listing that nobody subscribed to is thrown away again.
    if (!_subscribers.count())
        return;
    const auto end = std::min(_referencesKept + referencesKeptAtOnce, _directoryInfo.endIndex());
    for (; _referencesKept < end; ++_referencesKept) {
        if (auto* item = _directoryInfo.objectAtIndex(_referencesKept))
            item->ZEF_keepReference();
    }
    if (_referencesKept >= _directoryInfo.endIndex() || _referenceTimer)
        return;
    _referenceTimer = zef::makeRef<zef::Timer>(
        0, referenceInterval, zef::Repeats::yes, [this](zef::Timer&) { keepSomeReferences(); });
    zef::RunLoop::current().addTimer(_referenceTimer, zef::TimerModes::common);
}

void ZEFDirectorySubscription::keepSomeReferences()
{
    auto& clock = zef::Clock::shared();
    const double end = clock.monotonicSeconds() + referenceSlice;
    while (_referencesKept < _directoryInfo.endIndex()) {
        if (auto* item = _directoryInfo.objectAtIndex(_referencesKept++))
            item->ZEF_keepReference();
        if (clock.monotonicSeconds() >= end)
            return;
    }
    _referenceTimer->invalidate();
    _referenceTimer = nullptr;
}

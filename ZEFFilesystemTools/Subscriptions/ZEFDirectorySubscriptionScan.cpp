// SPDX-License-Identifier: MIT

// New files come in by two ways. A listing on this thread runs a load operation here and now,
// leaves out the entries that a check has just looked at, and adds its records to those of the
// check. A background load runs the same operation on the load queue; a timer drains what it has
// found, in batches that the subscribers get at once, and when the load has ended a full check
// makes up for what happened meanwhile.

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionState.h"

namespace {

// Knows the entries that the check has just looked at one by one, so that listing the folder again
// needs no second look at them. The listing usually has the order in which they became known, so
// the walk's next file is tried before the whole set.
class CheckedEntries final : public zef::KnownEntries {
public:
    CheckedEntries(const ZEFKnownFiles::Items& files, const ZEFFileItem& directory)
        : _files(files)
        , _directory(directory)
        , _folder(directory.url())
    {
    }

    bool isKnown(std::string_view name, std::uint64_t inode) override
    {
        if (nextFileHasNumber(inode))
            return isEntry(*_files.objectAtIndex(_next++), name);
        const auto registered = ZEFFileRegistry::item(_directory.fileDeviceNumber(), inode);
        const auto index = _files.indexOf(registered.get());
        if (index == _files.endIndex())
            return false;
        _next = index + 1;
        return isEntry(*registered, name);
    }

private:
    bool nextFileHasNumber(std::uint64_t inode)
    {
        while (_next < _files.endIndex() && !_files.objectAtIndex(_next))
            ++_next;
        return _next < _files.endIndex() && _files.objectAtIndex(_next)->fileiNode() == inode;
    }

    bool isEntry(const ZEFFileItem& item, std::string_view name) const
    {
        const auto url = item.url();
        return item.isValid() && url.name() == name && url.isDirectlyIn(_folder);
    }

    const ZEFKnownFiles::Items& _files;
    const ZEFFileItem& _directory;
    zef::FileURL _folder;
    std::size_t _next = 0;
};

// An item may come into the folder before anybody has asked it where it is.
void noteSightings(const std::vector<ZEFFileLoadOperation::Sighting>& sightings)
{
    for (const auto& sighting : sightings)
        sighting.item->ZEF_seenAtURL(sighting.url);
}

void reportAppeared(ZEFFileItem& item, ZEFChangeArray& changes)
{
    auto record = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::appeared, &item);
    changes.addObject(record);
    item.eventOccurred(record.get());
}

void takeInListed(ZEFFileItem& item, ZEFKnownFiles& knownFiles, ZEFChangeArray* changes)
{
    if (!knownFiles.insert(item))
        return;
    if (item.isBasicDirectory() && !item.usingKQueue())
        item.initKQueue();
    if (changes)
        reportAppeared(item, *changes);
}

} // namespace

void ZEFAsynchronousLoadingTimerCallback(zef::Timer*, ZEFDirectorySubscription* subscription)
{
    subscription->ZEF_checkAsyncLoadingQueue();
}

void ZEFDirectorySubscription::ZEF_scanDirectoryForUpdatedFiles(
    ZEFChangeArray* changes, bool asynchronously)
{
    if (!asynchronously) {
        state().list(changes).hookException.rethrow();
        return;
    }
    state().load.begin(state().folder.directoryFile,
        [this](zef::Timer& timer) { ZEFAsynchronousLoadingTimerCallback(&timer, this); });
}

ZEFDirectorySubscription::State::Listing ZEFDirectorySubscription::State::list(
    ZEFChangeArray* changes, std::unique_ptr<zef::CatalogIterator> entries)
{
    auto operation = zef::makeRef<ZEFFileLoadOperation>();
    operation->setLoadingDirectory(folder.directoryFile);
    operation->setOpenedIterator(std::move(entries));
    CheckedEntries checkedEntries(knownFiles.all(), *folder.directoryFile);
    operation->setKnownEntries(changes ? &checkedEntries : nullptr);
    operation->start();
    Listing listing{ operation->listingResult(), operation->loadingArray()->takeAllObjects(), {} };
    noteSightings(operation->takeSightings());
    for (const auto& item : listing.items)
        listing.hookException.guard([&] { takeInListed(*item, knownFiles, changes); });
    keepReferencesSoon();
    return listing;
}

void ZEFDirectorySubscription::State::keepReferencesSoon()
{
    if (subscribers.count())
        knownFiles.keepReferencesSoon();
}

void ZEFDirectorySubscription::State::closeLoad()
{
    load.close();
    folder.checkDirContents = true;
}

void ZEFDirectorySubscription::ZEF_checkAsyncLoadingQueue()
{
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    auto& load = state().load;
    const zef::Ref operation(load.operation());
    if (!operation)
        return;
    if (load.isToStop()) {
        operation->cancel();
        state().closeLoad();
        return;
    }
    const auto findings = load.tryTake();
    // The timer comes again.
    if (!findings)
        return;
    state().takeIn(*findings);
    // A subscriber may have ended the load meanwhile.
    if (load.operation() != operation || !operation->isFinished())
        return;
    // Nobody else writes to the queue any more, so its rest needs no lock.
    state().takeIn(load.takeRest());
    if (load.operation() != operation)
        return;
    state().closeLoad();
    notifyOfCheck();
}

void ZEFDirectorySubscription::State::takeIn(const ZEFBackgroundLoad::Findings& findings)
{
    noteSightings(findings.sightings);
    if (findings.items.empty())
        return;
    auto batch = zef::makeRef<ZEFChangeArray>(findings.items.size());
    zef::FirstException hookException;
    for (const auto& item : findings.items) {
        knownFiles.insert(*item);
        hookException.guard([&] { reportAppeared(*item, *batch); });
    }
    keepReferencesSoon();
    hookException.guard([&] { subscription.notifySubscribers(batch.get()); });
    hookException.rethrow();
}

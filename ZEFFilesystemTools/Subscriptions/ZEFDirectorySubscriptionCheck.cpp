// SPDX-License-Identifier: MIT

// A check compares the folder with what its subscription knows of it, the cheap looks first. It
// asks the folder's own item. As long as that is unchanged it asks only the subfolders; otherwise,
// or when a full check is due, every known file. Files that are gone from here are forgotten. Then,
// if the folder has changed and a count of its entries doesn't rule out new ones, it is listed. The
// records stand in the order of these steps.

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"
#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"
#include "ZEFFilesystemTools/Platform/Disk/PinnedFolder.h"
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"
#include "ZEFFilesystemTools/Platform/Objects/FirstException.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionState.h"

#include <algorithm>
#include <optional>

namespace {

// From how many on it pays to open the folder for the looks at its items.
constexpr std::size_t manyItems = 32;

bool isShortageOfResources(zef::FileError result)
{
    return result == zef::FileError::tooManyOpenFiles || result == zef::FileError::outOfMemory;
}

} // namespace

// One comparison of the folder and its known files with their state at the last look. Item hooks
// are called on the way and may do anything, so every walk goes by index over a set that keeps its
// indexes.
class ZEF_INTERNAL ZEFDirectorySubscription::Check {
public:
    explicit Check(ZEFDirectorySubscription& subscription)
        : _subscription(subscription)
        , _folder(subscription.state().folder)
        , _directory(*_folder.directoryFile)
        , _knownFiles(subscription.state().knownFiles)
    {
    }

    // Sets `found` to null or to at least one record, also when a hook has thrown.
    void run(zef::Ref<ZEFChangeArray>& found)
    {
        lookAtFolder();
        if (_folder.shouldCheck) {
            if (_folderChanged || _folder.checkDirContents)
                lookAtAllItems();
            else
                lookAtSubfolders();
        }
        forgetItems();
        if ((_folderChanged || _folder.checkDirContents) && _folder.shouldCheck)
            lookForNewItems();
        // The next check lists what this one could not for lack of descriptors or memory.
        _folder.checkDirContents = _fullCheckIsDue;
        found = _changes && !_changes->isEmpty() ? std::move(_changes) : nullptr;
        _hookException.rethrow();
    }

private:
    ZEFChangeRecord* add(ZEFFileEvent event, ZEFFileItem& item)
    {
        auto record = zef::makeRef<ZEFChangeRecord>(event, &item);
        auto* borrowed = record.get();
        changes().addObject(std::move(record));
        return borrowed;
    }

    void addAndTell(ZEFFileEvent event, ZEFFileItem& item)
    {
        const auto* record = add(event, item);
        _hookException.guard([&] { item.eventOccurred(record); });
    }

    // Made with the first record: most checks find nothing.
    ZEFChangeArray& changes()
    {
        if (!_changes)
            _changes = zef::makeRef<ZEFChangeArray>();
        return *_changes;
    }

    void lookAtFolder()
    {
        const auto flags = _directory.changesForObserver(&_subscription);
        _folderChanged = flags.pathChanged || flags.modified;
        if (!flags.pathChanged) {
            if (flags.modified)
                addAndTell(ZEFFileEvent::updated, _directory);
            return;
        }
        if (!flags.exists) {
            add(ZEFFileEvent::removed, _directory);
            _folder.shouldCheck = false;
            return;
        }
        _folderMoved = true;
        const auto url = _directory.url();
        const bool sameParent = &url.parentFolder() == &_folder.lastKnownURL.parentFolder();
        addAndTell(sameParent ? ZEFFileEvent::renamed : ZEFFileEvent::moved, _directory);
        _subscription.ZEF_setURL(url);
    }

    // The economy of the poll: plain files are not asked as long as their folder is unchanged.
    void lookAtSubfolders()
    {
        const auto& folders = _knownFiles.folders();
        for (std::size_t index = 0; index < folders.endIndex(); ++index) {
            auto* item = folders.objectAtIndex(index);
            if (!item)
                continue;
            const auto flags = item->ZEF_modificationForObserver(&_subscription);
            if (flags.modified)
                addAndTell(ZEFFileEvent::updated, *item);
            // Moved since the folder was looked at, or before its first question: nothing of that
            // is told here, but the full check of the next poll does.
            _fullCheckIsDue |= flags.pathChanged;
        }
    }

    void lookAtAllItems()
    {
        const auto& items = _knownFiles.all();
        zef::FSRef reference;
        std::optional<zef::PinnedFolder> folder;
        if (items.count() >= manyItems && _directory.ZEF_copyReference(reference))
            folder.emplace(reference, _directory.url());
        for (std::size_t index = 0; index < items.endIndex(); ++index) {
            if (const zef::Ref<ZEFFileItem> item = items.objectAtIndex(index))
                lookAtItem(*item, folder ? &*folder : nullptr);
        }
    }

    void lookAtItem(ZEFFileItem& item, const zef::PinnedFolder* folder)
    {
        const auto flags = item.ZEF_changesForObserver(&_subscription, folder);
        if (flags.pathChanged) {
            reportPathChange(item, flags.exists);
            return;
        }
        if (!flags.exists) {
            lookAtLostItem(item);
            return;
        }
        if (!item.url().isDirectlyIn(_folder.lastKnownURL))
            _itemsWithOtherNames.emplace_back(&item);
        if (flags.modified)
            addAndTell(ZEFFileEvent::updated, item);
    }

    // Somebody else found it lost before this subscription's first question.
    void lookAtLostItem(const ZEFFileItem& item)
    {
        ++_lostItems;
        zef::log("Error in ZEFDirectorySubscription: apparently failed to remove file %s",
            item.description().c_str());
    }

    void reportPathChange(ZEFFileItem& item, bool exists)
    {
        if (!exists) {
            add(ZEFFileEvent::removed, item);
            _removals.emplace_back(&item);
            return;
        }
        if (!item.url().isDirectlyIn(_folder.lastKnownURL)) {
            addAndTell(ZEFFileEvent::moved, item);
            _removals.emplace_back(&item);
            return;
        }
        addAndTell(_folderMoved ? ZEFFileEvent::movedInParent : ZEFFileEvent::renamed, item);
    }

    void forgetItems()
    {
        for (const auto& item : _removals)
            _knownFiles.forget(*item);
        _knownFiles.compact();
    }

    // A listing costs more than a count, and only removals can explain that a folder has become
    // smaller than what is known of it. Items that somebody else found lost are not in it, and of
    // those that are followed by a name in another folder only a listing shows whether they are.
    void lookForNewItems()
    {
        zef::FSRef reference;
        const auto* given = _directory.ZEF_copyReference(reference) ? &reference : nullptr;
        auto counted = zef::Catalog::shared().countEntriesAndKeep(given, _directory.url());
        _fullCheckIsDue = isShortageOfResources(counted.error());
        auto entries = counted ? *std::move(counted) : zef::Catalog::CountedFolder();
        if (_fullCheckIsDue || (holdsNothingNew(entries.count) && _itemsWithOtherNames.empty()))
            return;
        auto listing = _subscription.state().list(&changes(), std::move(entries.iterator));
        _hookException.guard([&] { listing.hookException.rethrow(); });
        _fullCheckIsDue = isShortageOfResources(listing.error);
        if (listing.error == zef::FileError::none)
            reportMissing(std::move(listing.items));
    }

    // Whether the folder, with this many entries, can't hold any that aren't known.
    bool holdsNothingNew(std::size_t entryCount) const
    {
        const auto knownCount = _knownFiles.all().count();
        return entryCount + _lostItems < knownCount
            && entryCount + _lostItems + unregisteredItems() < knownCount;
    }

    // An item whose entry in the registry its predecessor took along when it died may have got a
    // twin, so that the two of them stand for one entry.
    std::size_t unregisteredItems() const
    {
        const auto& items = _knownFiles.all();
        std::size_t count = 0;
        for (std::size_t index = 0; index < items.endIndex(); ++index) {
            const auto* item = items.objectAtIndex(index);
            count += item && item->isValid()
                && ZEFFileRegistry::item(item->fileDeviceNumber(), item->fileiNode()).get() != item;
        }
        return count;
    }

    // A file whose name here is gone while the one that it is followed by, in another folder, is
    // there: to this folder it has moved.
    void reportMissing(std::vector<zef::Ref<ZEFFileItem>> listed)
    {
        if (_itemsWithOtherNames.empty())
            return;
        const auto byAddress = [](const auto& a, const auto& b) { return a.get() < b.get(); };
        std::sort(listed.begin(), listed.end(), byAddress);
        for (const auto& item : _itemsWithOtherNames) {
            if (std::binary_search(listed.begin(), listed.end(), item, byAddress))
                continue;
            addAndTell(ZEFFileEvent::moved, *item);
            _knownFiles.forget(*item);
        }
    }

    ZEFDirectorySubscription& _subscription;
    State::Folder& _folder;
    ZEFFileItem& _directory;
    ZEFKnownFiles& _knownFiles;
    zef::Ref<ZEFChangeArray> _changes;
    std::vector<zef::Ref<ZEFFileItem>> _removals;
    // Known items that are followed by a hard link's name in another folder.
    std::vector<zef::Ref<ZEFFileItem>> _itemsWithOtherNames;
    std::size_t _lostItems = 0;
    zef::FirstException _hookException;
    bool _folderChanged = false;
    bool _folderMoved = false;
    bool _fullCheckIsDue = false;
};

void ZEFDirectorySubscription::checkDirectory(zef::Ref<ZEFChangeArray>& changes)
{
    changes = nullptr;
    const auto& folder = state().folder;
    if (isLoading() || !folder.directoryFile->isValid() || !folder.shouldCheck)
        return;
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    const zef::ChangeNotifier::Round round;
    Check(*this).run(changes);
}

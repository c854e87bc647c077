// SPDX-License-Identifier: MIT
#include "tools/zef/Watch/WatchedFolder.h"

#include "tools/zef/NumberedItem.h"

namespace tool {

WatchedFolder::WatchedFolder(ZEFDirectorySubscription& subscription)
    : _subscription(&subscription)
{
    if (const auto* folder = subscription.directoryFile())
        _ownNumber = numberOf(*folder);
    _locations[_ownNumber] = subscription.url();
    const auto files = subscription.files();
    for (const auto& file : *files)
        _locations[numberOf(*file)] = file->url();
}

bool WatchedFolder::isItself(const ZEFFileItem& item) const
{
    return numberOf(item) == _ownNumber;
}

// A subscription whose folder somebody else found lost stays valid, but reports nothing any more.
bool WatchedFolder::isAlive() const
{
    return _subscription->isValid() && _subscription->directoryFile();
}

zef::FileURL WatchedFolder::lastLocation(const ZEFFileItem& item) const
{
    const auto found = _locations.find(numberOf(item));
    return found == _locations.end() ? zef::FileURL() : found->second;
}

void WatchedFolder::noteChanges(const ZEFChangeArray& changes)
{
    for (const auto& record : changes) {
        const auto& file = *record->file();
        const bool leaves = record->event() == ZEFFileEvent::removed
            || record->event() == ZEFFileEvent::moved;
        if (leaves && !isItself(file))
            _locations.erase(numberOf(file));
        else if (const auto url = file.url())
            _locations[numberOf(file)] = url;
    }
}

} // namespace tool

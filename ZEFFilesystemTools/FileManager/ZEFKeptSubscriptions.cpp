// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFKeptSubscriptions.h"

namespace {

constexpr std::size_t capacityHint = 500;

} // namespace

ZEFKeptSubscriptions::ZEFKeptSubscriptions()
    : _directoriesDict(capacityHint)
    , _directories(zef::makeRef<zef::Array<ZEFDirectorySubscription>>(capacityHint))
{
}

ZEFDirectorySubscription* ZEFKeptSubscriptions::subscriptionForFile(const ZEFFileItem& file) const
{
    const auto found = _directoriesDict.find(const_cast<ZEFFileItem*>(&file));
    if (found == _directoriesDict.end())
        return nullptr;
    // Equality is that of the numbers, and a folder made just now may have the number of one that
    // was deleted before its subscription noticed.
    const auto* watched = found->second->directoryFile();
    return watched && watched->ZEF_isAnotherObject(file) ? nullptr : found->second.get();
}

void ZEFKeptSubscriptions::add(ZEFFileItem& file, zef::Ref<ZEFDirectorySubscription> subscription)
{
    _directoriesDict.erase(&file);
    _directoriesDict.emplace(&file, subscription);
    _directories->addObject(std::move(subscription));
}

void ZEFKeptSubscriptions::remove(ZEFDirectorySubscription& subscription)
{
    if (auto* file = subscription.directoryFile()) {
        const auto found = _directoriesDict.find(file);
        if (found != _directoriesDict.end() && found->second == &subscription)
            _directoriesDict.erase(found);
    }
    const auto index = _directories->indexOfIdentical(&subscription);
    if (index < _directories->count())
        _directories->removeObjectAtIndex(index);
}

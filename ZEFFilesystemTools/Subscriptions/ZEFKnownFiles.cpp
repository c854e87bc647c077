// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFKnownFiles.h"

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>

namespace {

constexpr std::size_t knownItemsCapacity = 200;
constexpr std::size_t knownFoldersCapacity = 100;

// How many new items keep references to their files at once; the rest follow in slices.
constexpr std::size_t referencesKeptAtOnce = 512;
constexpr double referenceSlice = 0.002;
constexpr double referenceInterval = 0.01;

} // namespace

ZEFKnownFiles::ZEFKnownFiles(const ZEFObject& observer)
    : _observer(observer)
    , _directoryInfo(knownItemsCapacity)
    , _directoryInfoDirectoriesOnly(knownFoldersCapacity)
{
}

ZEFKnownFiles::~ZEFKnownFiles()
{
    for (std::size_t index = 0; index < _directoryInfo.endIndex(); ++index) {
        if (auto* item = _directoryInfo.objectAtIndex(index))
            item->removeFileObserver(&_observer);
    }
    if (_referenceTimer)
        _referenceTimer->invalidate();
}

bool ZEFKnownFiles::insert(ZEFFileItem& item)
{
    if (!_directoryInfo.insert(&item))
        return false;
    if (item.isBasicDirectory())
        _directoryInfoDirectoriesOnly.insert(&item);
    return true;
}

void ZEFKnownFiles::forget(ZEFFileItem& item)
{
    item.removeFileObserver(&_observer);
    if (item.isBasicDirectory())
        _directoryInfoDirectoriesOnly.remove(&item);
    _directoryInfo.remove(&item);
}

void ZEFKnownFiles::compact()
{
    _directoryInfoDirectoriesOnly.compact();
    if (_directoryInfo.compact())
        _referencesKept = 0;
}

void ZEFKnownFiles::keepReferencesSoon()
{
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

void ZEFKnownFiles::keepSomeReferences()
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

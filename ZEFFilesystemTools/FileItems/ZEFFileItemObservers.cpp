// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include <cassert>
#include <cmath>

bool ZEFFileInfoList::hasTimeStampsOf(const zef::Stat& stat) const
{
    return zef::secondsOfTimeStamp(stat.modificationTime) == modificationTime
        && zef::secondsOfTimeStamp(stat.statusChangeTime) == statusChangeTime;
}

void ZEFFileInfoList::setTimeStamps(const zef::Stat& stat)
{
    modificationTime = zef::secondsOfTimeStamp(stat.modificationTime);
    statusChangeTime = zef::secondsOfTimeStamp(stat.statusChangeTime);
}

bool ZEFFileItem::registerFileObserver(const ZEFObject* observer)
{
    if (recordForObserver(observer))
        return false;
    appendRecord(observer);
    return true;
}

bool ZEFFileItem::removeFileObserver(const ZEFObject* observer)
{
    assert(observer != this);
    auto* link = &_pathInfo.next;
    while (*link && (*link)->observer != observer)
        link = &(*link)->next;
    if (!*link)
        return false;
    *link = std::move((*link)->next);
    return true;
}

ZEFFileChanges ZEFFileItem::changesForObserver(const ZEFObject* observer)
{
    return ZEF_changesForObserver(observer, nullptr);
}

ZEFFileChanges ZEFFileItem::ZEF_changesForObserver(
    const ZEFObject* observer, const zef::PinnedFolder* folder)
{
    ZEFFileChanges changes;
    auto* record = askableRecord(observer);
    if (!record)
        return changes;
    look(*record, changes, folder);
    if (changes.pathChanged)
        followMove(*record, changes);
    else if (changes.modified)
        _modDate = std::numeric_limits<double>::quiet_NaN();
    return changes;
}

ZEFFileChanges ZEFFileItem::ZEF_modificationForObserver(const ZEFObject* observer)
{
    ZEFFileChanges changes;
    if (auto* record = askableRecord(observer))
        look(*record, changes, nullptr);
    if (changes.modified)
        _modDate = std::numeric_limits<double>::quiet_NaN();
    return changes;
}

bool ZEFFileItem::updateForObserver(const ZEFObject* observer)
{
    zef::Ref<ZEFFileItem> protectedThis(this);
    auto* record = recordForObserver(observer);
    if (!record || !record->path)
        return false;
    const auto oldURL = record->path;
    const auto changes = changesForObserver(observer);
    if (!changes.pathChanged && !changes.modified)
        return false;

    auto event = ZEFFileEvent::updated;
    if (changes.pathChanged) {
        const bool sameParent = _pathURL && &_pathURL.parentFolder() == &oldURL.parentFolder();
        event = sameParent   ? ZEFFileEvent::renamed
            : changes.exists ? ZEFFileEvent::moved
                             : ZEFFileEvent::removed;
    }
    updateForEvent(zef::makeRef<ZEFChangeRecord>(event, protectedThis).get());
    return true;
}

void ZEFFileItem::eventOccurred(const ZEFChangeRecord* record)
{
    updateForEvent(record);
}

void ZEFFileItem::updateForEvent(const ZEFChangeRecord*) { }

ZEFFileInfoList* ZEFFileItem::recordForObserver(const ZEFObject* observer)
{
    auto* record = &_pathInfo;
    while (record && record->observer != observer)
        record = record->next.get();
    return record;
}

ZEFFileInfoList* ZEFFileItem::appendRecord(const ZEFObject* observer)
{
    // From now on somebody follows the file, wherever it goes.
    ZEF_keepReference();
    makeOwnPath();
    auto* last = &_pathInfo;
    while (last->next)
        last = last->next.get();
    last->next = std::make_unique<ZEFFileInfoList>();
    auto* record = last->next.get();
    record->observer = observer;
    record->path = _pathInfo.path;
    record->modificationTime = _pathInfo.modificationTime;
    record->statusChangeTime = _pathInfo.statusChangeTime;
    record->lastEventTime = _pathInfo.lastEventTime;
    record->valid = isValid();
    return record;
}

// The record of an observer, new for a new one, after the kernel queue was asked; null when there
// is nothing more to report to it.
ZEFFileInfoList* ZEFFileItem::askableRecord(const ZEFObject* observer)
{
    auto* record = recordForObserver(observer);
    if (!record)
        record = appendRecord(observer);
    if (!record->valid)
        return nullptr;
    if (usingKQueue())
        ZEF_checkKQueue();
    if (record->path)
        return record;
    zef::log("Error, tried to statmoddate a null value");
    return nullptr;
}

void ZEFFileItem::look(
    ZEFFileInfoList& record, ZEFFileChanges& changes, const zef::PinnedFolder* folder)
{
    zef::Stat stat;
    const bool isThere = isSeenAt(record.path, folder, stat);
    const double eventTime = usingKQueue() ? _pathInfo.lastEventTime : 0;
    if (!isThere) {
        changes.pathChanged = true;
        if (eventTime > 0)
            record.lastEventTime = eventTime;
        return;
    }
    changes.exists = true;
    changes.modified = eventTime > 0 ? eventTime > record.lastEventTime
                                     : !record.hasTimeStampsOf(stat);
    if (!changes.modified)
        return;
    record.setTimeStamps(stat);
    if (eventTime > 0)
        record.lastEventTime = eventTime;
}

void ZEFFileItem::followMove(ZEFFileInfoList& record, ZEFFileChanges& changes)
{
    const auto found = resolveReference();
    if (!found) {
        becomeLost();
        record.path = nullptr;
        record.valid = false;
        changes.exists = false;
        return;
    }
    if (found != _pathURL)
        setLocation(found);
    makeOwnPath();
    record.path = _pathInfo.path;
    changes.exists = true;
}

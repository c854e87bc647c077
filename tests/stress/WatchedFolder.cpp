// SPDX-License-Identifier: MIT
#include "tests/stress/WatchedFolder.h"

#include "ZEFFilesystemTools/Platform/FileSystem.h"
#include "ZEFFilesystemTools/Platform/TimeStamp.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

zef::Stat statOf(const std::string& path)
{
    zef::Stat stat;
    EXPECT_EQ(zef::FileSystem::shared().statLink(path.c_str(), stat), 0) << path;
    return stat;
}

int phaseOf(const ZEFChangeRecord& record, const ZEFFileItem* folder)
{
    if (record.file() == folder)
        return 0;
    return record.event() == ZEFFileEvent::appeared ? 2 : 1;
}

} // namespace

WatchedFolder::WatchedFolder(zef::Ref<ZEFFileItem> folder)
    : _folder(std::move(folder))
    , _subscription(ZEFDirectorySubscription::initForSubscriber(this, _folder.get()))
{
    const auto files = _subscription->files();
    for (const auto& item : *files)
        _known.emplace(item.get(), item);
}

WatchedFolder::~WatchedFolder()
{
    _subscription->unsubscribe(this);
}

void WatchedFolder::check()
{
    _lastRecords.clear();
    _sawFolderChange = false;
    _subscription->checkDirectory(_pending);
}

void WatchedFolder::notify()
{
    if (_pending)
        _subscription->notifySubscribers(_pending.get());
    _pending = nullptr;
}

void WatchedFolder::directorySubscriptionFoundChanges(
    ZEFDirectorySubscription*, ZEFChangeArray* changes)
{
    EXPECT_FALSE(changes->isEmpty());
    checkOrder(*changes);
    for (const auto& record : *changes) {
        checkRecord(*record);
        _lastRecords.push_back(record);
    }
}

void WatchedFolder::checkOrder(const ZEFChangeArray& changes) const
{
    int phase = 0;
    for (std::size_t index = 0; index < changes.count(); ++index) {
        const auto& record = *changes.objectAtIndex(index);
        const int next = phaseOf(record, _folder.get());
        // Of a file with several names only the listing tells that the one here is gone.
        const bool isLateMove = record.event() == ZEFFileEvent::moved && phase == 2;
        EXPECT_TRUE(next >= phase || isLateMove) << record.description();
        EXPECT_TRUE(next > 0 || index == 0) << "the folder's record comes first and once";
        phase = std::max(phase, next);
    }
}

void WatchedFolder::checkRecord(const ZEFChangeRecord& record)
{
    auto* item = record.file();
    if (item == _folder.get()) {
        _sawFolderChange = true;
        EXPECT_NE(record.event(), ZEFFileEvent::appeared);
        EXPECT_NE(record.event(), ZEFFileEvent::movedInParent);
        EXPECT_EQ(record.event() == ZEFFileEvent::removed, !_subscription->isValid());
        return;
    }
    const bool wasKnown = _known.contains(item);
    EXPECT_EQ(wasKnown, record.event() != ZEFFileEvent::appeared) << record.description();
    switch (record.event()) {
    case ZEFFileEvent::appeared:
        _known.emplace(item, item);
        break;
    case ZEFFileEvent::removed:
        EXPECT_FALSE(item->isValid()) << record.description();
        _known.erase(item);
        break;
    case ZEFFileEvent::moved:
        _known.erase(item);
        break;
    case ZEFFileEvent::renamed:
    case ZEFFileEvent::movedInParent:
    case ZEFFileEvent::updated:
        break;
    }
}

WatchedFolder::Listing WatchedFolder::listing() const
{
    Listing result;
    for (const auto& entry : std::filesystem::directory_iterator(_folder->url().path())) {
        const auto stat = statOf(entry.path().string());
        result[{ stat.inode, stat.birthTime }] = { .item = nullptr,
            .name = entry.path().filename().string(),
            .modificationTime = zef::secondsOfTimeStamp(stat.modificationTime),
            .statusChangeTime = zef::secondsOfTimeStamp(stat.statusChangeTime),
            .isSingleFile = !stat.isFolder() && stat.linkCount == 1 };
    }
    return result;
}

void WatchedFolder::expectToEqualDisk()
{
    ASSERT_TRUE(_folder->isValid());
    EXPECT_EQ(_subscription->url(), _folder->url());
    auto onDisk = listing();
    const auto files = _subscription->files();
    EXPECT_EQ(files->count(), _known.size());
    EXPECT_EQ(files->count(), onDisk.size()) << _folder->url().path();
    for (const auto& item : *files) {
        EXPECT_TRUE(_known.contains(item.get()));
        ASSERT_TRUE(item->isValid()) << item->description();
        const auto stat = statOf(item->url().path());
        EXPECT_EQ(stat.inode, item->fileiNode()) << item->description();
        const auto found = onDisk.find({ stat.inode, stat.birthTime });
        ASSERT_NE(found, onDisk.end()) << item->description();
        EXPECT_TRUE(stat.linkCount > 1 || item->url().isDirectlyIn(_folder->url()));
        EXPECT_TRUE(stat.linkCount > 1 || item->url().name() == found->second.name);
        found->second.item = item;
    }
    _lastListing = std::move(onDisk);
}

std::size_t WatchedFolder::recordsOf(const ZEFFileItem* item, ZEFFileEvent event) const
{
    return static_cast<std::size_t>(std::count_if(_lastRecords.begin(), _lastRecords.end(),
        [&](const auto& record) { return record->file() == item && record->event() == event; }));
}

void WatchedFolder::expectRecordsToTellChanges()
{
    const auto before = std::move(_lastListing);
    expectToEqualDisk();
    for (const auto& [identity, seen] : before)
        expectRecordsOf(seen, _lastListing);
    for (const auto& [identity, seen] : _lastListing) {
        if (!before.contains(identity)) {
            EXPECT_EQ(recordsOf(seen.item.get(), ZEFFileEvent::appeared), 1U) << seen.name;
        }
    }
}

// Files with several names and folders, which are watched on their own as well, have histories that
// two looks at the disk don't tell.
void WatchedFolder::expectRecordsOf(const Seen& before, const Listing& now) const
{
    if (!before.isSingleFile)
        return;
    const auto* item = before.item.get();
    const auto found = std::find_if(now.begin(), now.end(),
        [item](const auto& entry) { return entry.second.item.get() == item; });
    const auto gone = recordsOf(item, ZEFFileEvent::removed) + recordsOf(item, ZEFFileEvent::moved);
    if (found == now.end()) {
        EXPECT_EQ(gone, 1U) << before.name;
        return;
    }
    const auto& after = found->second;
    EXPECT_EQ(gone, 0U) << before.name;
    if (!after.isSingleFile)
        return;
    const auto renamed = recordsOf(item, ZEFFileEvent::renamed)
        + recordsOf(item, ZEFFileEvent::movedInParent);
    if (after.name != before.name) {
        EXPECT_EQ(renamed, 1U) << before.name << " -> " << after.name;
    }
    const bool isChanged = after.modificationTime != before.modificationTime
        || after.statusChangeTime != before.statusChangeTime;
    if (isChanged && _sawFolderChange && !renamed) {
        EXPECT_EQ(recordsOf(item, ZEFFileEvent::updated), 1U) << before.name;
    }
}

// SPDX-License-Identifier: MIT
#include "tests/stress/WatchedFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include <unistd.h>

namespace {

zef::Stat statOf(const std::string& path)
{
    zef::Stat stat;
    EXPECT_EQ(zef::FileSystem::shared().statLink(path.c_str(), stat), 0) << path;
    return stat;
}

// Without privileges or descriptors a file that moves to a folder that nobody watches is lost until
// a listing meets it again. The lost item that is then replaced takes its successor's entry out of
// the registry when it dies, so that the file gets one item more.
bool existingFilesMayGetLost()
{
    return ::geteuid() != 0 || !zef::Locator::shared().descriptorBudget();
}

int phaseOf(const ZEFChangeRecord& record, const ZEFFileItem* folder)
{
    if (record.file() == folder)
        return 0;
    return record.event() == ZEFFileEvent::appeared ? 2 : 1;
}

// With ZEF_STRESS_TRACE in the environment, and below strace(1), a failing seed tells its story.
void traceChanges(const ZEFFileItem& folder, const ZEFChangeArray& changes)
{
    static const bool isWanted = std::getenv("ZEF_STRESS_TRACE");
    if (!isWanted)
        return;
    auto text = "found in " + folder.description() + ":\n";
    for (const auto& record : changes)
        text += "  " + record->description() + "\n";
    (void)!::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace

WatchedFolder::WatchedFolder(
    zef::Ref<ZEFFileItem> folder, const std::set<std::uint64_t>& filesWithSeveralNames)
    : _folder(std::move(folder))
    , _subscription(ZEFDirectorySubscription::initForSubscriber(this, _folder.get()))
    , _filesWithSeveralNames(filesWithSeveralNames)
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
    traceChanges(*_folder, *changes);
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

WatchedFolder::Listing WatchedFolder::listing()
{
    Listing result;
    for (const auto& entry : std::filesystem::directory_iterator(_folder->url().path())) {
        const auto stat = statOf(entry.path().string());
        result[{ stat.inode, stat.birthTime }] = { .item = nullptr,
            .name = entry.path().filename().string(),
            .modificationTime = zef::secondsOfTimeStamp(stat.modificationTime),
            .statusChangeTime = zef::secondsOfTimeStamp(stat.statusChangeTime),
            // Once is enough: which name the item follows depends on which of them went first.
            .isSingleName = !_filesWithSeveralNames.contains(stat.inode),
            .isFolder = stat.isFolder() };
    }
    return result;
}

void WatchedFolder::expectToEqualDisk()
{
    ASSERT_TRUE(_folder->isValid());
    EXPECT_EQ(_subscription->url(), _folder->url());
    auto onDisk = listing();
    const auto files = _subscription->files();
    std::size_t lostCount = 0;
    std::size_t twinCount = 0;
    for (const auto& item : *files) {
        EXPECT_TRUE(_known.contains(item.get()));
        // One that another folder's subscription found lost before this one's first question stays
        // known, which the log tells.
        if (!item->isValid()) {
            ++lostCount;
            continue;
        }
        // The one with this number, whatever its birth time.
        const auto found = onDisk.lower_bound({ item->fileiNode(), INT64_MIN });
        ASSERT_TRUE(found != onDisk.end() && found->first.first == item->fileiNode())
            << item->description();
        if (found->second.item) {
            EXPECT_TRUE(existingFilesMayGetLost() || !found->second.isSingleName)
                << item->description();
            found->second.isSingleName = false;
            ++twinCount;
        }
        found->second.item = item;
        // A file with several names may be followed by one that lies elsewhere.
        if (!found->second.isSingleName)
            continue;
        EXPECT_TRUE(item->url().isDirectlyIn(_folder->url())) << item->description();
        EXPECT_EQ(item->url().name(), found->second.name) << item->description();
    }
    EXPECT_EQ(files->count(), _known.size());
    EXPECT_EQ(files->count(), onDisk.size() + lostCount + twinCount) << _folder->url().path();
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
    if (testing::Test::HasFailure())
        return;
    for (const auto& [identity, seen] : before) {
        const auto now = _lastListing.find(identity);
        // Not where another item has taken the file over.
        if (now == _lastListing.end() || now->second.item == seen.item)
            expectRecordsOf(seen, _lastListing);
    }
    for (const auto& [identity, seen] : _lastListing) {
        if (seen.item && !before.contains(identity)) {
            EXPECT_EQ(recordsOf(seen.item.get(), ZEFFileEvent::appeared), 1U) << seen.name;
        }
    }
}

// Files with several names and folders, which are watched on their own as well, have histories that
// two looks at the disk don't tell.
void WatchedFolder::expectRecordsOf(const Seen& before, const Listing& now) const
{
    if (!before.isSingleName || before.isFolder)
        return;
    const auto* item = before.item.get();
    // Whoever finds a file lost that exists takes the record of it.
    if (!item->isValid() && existingFilesMayGetLost())
        return;
    const auto found = std::find_if(now.begin(), now.end(),
        [item](const auto& entry) { return entry.second.item.get() == item; });
    const auto gone = recordsOf(item, ZEFFileEvent::removed) + recordsOf(item, ZEFFileEvent::moved);
    if (found == now.end()) {
        EXPECT_EQ(gone, 1U) << before.name;
        return;
    }
    const auto& after = found->second;
    if (!after.isSingleName)
        return;
    EXPECT_EQ(gone, 0U) << before.name;
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

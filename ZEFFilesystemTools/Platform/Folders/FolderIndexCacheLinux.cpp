// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/FolderIndexCache.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <fcntl.h>

namespace zef {
namespace {

constexpr double secondsToKeepAnIndex = 1;

// One search may go through 32 folders besides the object's own; the next one, for another object
// that vanished at the same time, goes through the same ones.
constexpr std::size_t mostIndexes = 40;
constexpr std::size_t mostEntriesKept = 300000;

Ref<const FolderIndex> readFolder(const char* path, std::size_t limit)
{
    auto& reserve = DescriptorReserve::shared();
    const int folder = reserve.openAt(AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
    if (folder < 0)
        return nullptr;
    auto index = FolderIndex::read(folder, limit);
    reserve.close(folder);
    return index;
}

} // namespace

Ref<const FolderIndex> FolderIndexCache::index(
    const FileURL& folder, std::size_t limit, Freshness freshness)
{
    PathBytes path;
    Stat stat;
    // With a slash at the end, so that a link to a folder is followed.
    if (!folder.fileSystemRepresentation(path) || !path.append("/")
        || statAt(AT_FDCWD, path.text(), stat) != 0 || !stat.isFolder())
        return nullptr;
    if (freshness == Freshness::recent) {
        if (auto known = find(stat, limit))
            return known;
    }
    auto index = readFolder(path.text(), limit);
    if (index)
        keep(index);
    return index;
}

void FolderIndexCache::forgetOld()
{
    if (_isEmpty.load(std::memory_order_relaxed))
        return;
    std::lock_guard lock(_mutex);
    forgetOldLocked();
}

Ref<const FolderIndex> FolderIndexCache::find(const Stat& folder, std::size_t limit)
{
    std::lock_guard lock(_mutex);
    forgetOldLocked();
    for (const auto& index : _indexes) {
        if (index->isOf(folder) && index->covers(limit))
            return index;
    }
    return nullptr;
}

void FolderIndexCache::keep(Ref<const FolderIndex> index)
{
    std::lock_guard lock(_mutex);
    std::erase_if(_indexes, [&](const auto& each) { return each->isOfSameFolder(*index); });
    _indexes.push_back(std::move(index));
    _isEmpty.store(false, std::memory_order_relaxed);
    std::size_t entries = 0;
    for (const auto& each : _indexes)
        entries += each->count();
    while (_indexes.size() > 1 && (_indexes.size() > mostIndexes || entries > mostEntriesKept)) {
        entries -= _indexes.front()->count();
        _indexes.erase(_indexes.begin());
    }
}

void FolderIndexCache::forgetOldLocked()
{
    const auto oldest = Clock::shared().monotonicSeconds() - secondsToKeepAnIndex;
    std::erase_if(_indexes, [&](const auto& index) { return index->secondsWhenRead() < oldest; });
    _isEmpty.store(_indexes.empty(), std::memory_order_relaxed);
}

} // namespace zef

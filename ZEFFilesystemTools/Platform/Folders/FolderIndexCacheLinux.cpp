// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/FolderIndexCache.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <fcntl.h>

namespace zef {
namespace {

// A folder without entries takes memory as well.
constexpr std::size_t costOfAFolder = 4;

Ref<const FolderIndex> readFolder(const char* path, std::size_t limit)
{
    auto& reserve = DescriptorReserve::shared();
    const int folder = reserve.openAt(AT_FDCWD, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
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
    return index(path.text(), stat, limit, freshness);
}

Ref<const FolderIndex> FolderIndexCache::index(
    const char* path, const Stat& stat, std::size_t limit, Freshness freshness)
{
    if (freshness == Freshness::recent) {
        const auto now = Clock::shared().monotonicSeconds();
        auto known = _indexes.find(ObjectNumbers::of(stat), now);
        if (known && (*known)->isOf(stat) && (*known)->covers(limit))
            return *std::move(known);
    }
    auto index = readFolder(path, limit);
    if (index) {
        _indexes.insert(index->folderNumbers(), index, index->secondsWhenRead(),
            index->count() + costOfAFolder);
    }
    return index;
}

void FolderIndexCache::forgetOld()
{
    if (!_indexes.isEmpty())
        _indexes.forgetOld(Clock::shared().monotonicSeconds());
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasFolders.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <fcntl.h>

namespace zef {
namespace {

constexpr double secondsToKeepAnIndex = 2;
constexpr std::size_t mostEntriesKept = 100000;

// A folder without entries takes memory as well.
std::size_t weight(const FolderIndex& index)
{
    return index.count() + 4;
}

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

Ref<const FolderIndex> AliasFolders::index(
    const char* path, const Stat& folder, std::size_t limit, double secondsAtStart)
{
    if (auto known = find(folder, limit, secondsAtStart))
        return known;
    auto index = readFolder(path, limit);
    if (index)
        keep(folder, index);
    return index;
}

Ref<const FolderIndex> AliasFolders::find(
    const Stat& folder, std::size_t limit, double secondsAtStart)
{
    std::lock_guard lock(_mutex);
    forgetOld();
    const auto found = _indexes.find(folder.inode);
    if (found == _indexes.end())
        return nullptr;
    const auto& index = *found->second;
    const bool isOutdated = index.mayHaveMissedAChange()
        && index.secondsWhenRead() < secondsAtStart;
    return index.isOf(folder) && index.covers(limit) && !isOutdated ? found->second : nullptr;
}

void AliasFolders::keep(const Stat& folder, Ref<const FolderIndex> index)
{
    std::lock_guard lock(_mutex);
    _entries += weight(*index);
    _indexes[folder.inode] = index;
    _order.emplace_back(folder.inode, std::move(index));
    while (_order.size() > 1 && _entries > mostEntriesKept)
        forgetFirst();
}

void AliasFolders::forgetOld()
{
    const auto oldest = Clock::shared().monotonicSeconds() - secondsToKeepAnIndex;
    while (!_order.empty() && _order.front().second->secondsWhenRead() < oldest)
        forgetFirst();
}

void AliasFolders::forgetFirst()
{
    const auto& [inode, index] = _order.front();
    const auto found = _indexes.find(inode);
    if (found != _indexes.end() && found->second == index)
        _indexes.erase(found);
    _entries -= weight(*index);
    _order.pop_front();
}

} // namespace zef

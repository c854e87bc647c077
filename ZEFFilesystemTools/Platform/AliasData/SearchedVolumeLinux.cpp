// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/SearchedVolume.h"

#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <fcntl.h>

namespace zef {
namespace {

const char* systemPath(const std::string& path)
{
    return path.empty() ? "/" : path.c_str();
}

} // namespace

SearchedVolume::SearchedVolume(FolderIndexCache& indexes, AliasMatch& match, SearchBudget& budget,
    const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID)
    : _indexes(indexes)
    , _match(match)
    , _budget(budget)
    , _mountPoint(mountPoint == "/" ? std::string() : mountPoint)
    , _device(device)
    , _mountID(mountID)
{
}

bool SearchedVolume::lookAt(const std::string& path) const
{
    return _match.lookAt(systemPath(path), _mountID);
}

bool SearchedVolume::lookIn(const std::string& path, const FolderIndex& index) const
{
    for (std::size_t position = 0;; ++position) {
        const auto name = index.name(record().inode, position);
        if (name.empty())
            return false;
        if (lookAt(pathOfEntry(path, name)))
            return true;
    }
}

std::optional<Stat> SearchedVolume::statFolder(const std::string& path) const
{
    Stat stat;
    std::uint64_t mountID = 0;
    const bool isOnVolume = statAt(AT_FDCWD, systemPath(path), stat, mountID) == 0
        && stat.isFolder() && stat.device == _device && (!_mountID || mountID == _mountID);
    return isOnVolume ? std::optional(stat) : std::nullopt;
}

Ref<const FolderIndex> SearchedVolume::index(
    const std::string& path, const Stat& stat, std::size_t limit) const
{
    auto index = _indexes.index(systemPath(path), stat, limit);
    if (!index || !index->mayHaveMissedAChangeBefore(_budget.secondsAtStart))
        return index;
    return _indexes.index(systemPath(path), stat, limit, FolderIndexCache::Freshness::readAgain);
}

std::string pathOfEntry(const std::string& path, std::string_view name)
{
    std::string result;
    result.reserve(path.size() + 1 + name.size());
    return result.append(path).append(1, '/').append(name);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/SearchedVolume.h"

#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <fcntl.h>

namespace zef {
namespace {

const char* systemPath(const std::string& path)
{
    return path.empty() ? "/" : path.c_str();
}

} // namespace

bool AliasBudget::isUsedUp() const
{
    return entries == 0 || Clock::shared().monotonicSeconds() >= secondsAtEnd;
}

SearchedVolume::SearchedVolume(AliasFolders& folders, AliasMatch& target, AliasBudget& budget,
    const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID)
    : _folders(folders)
    , _target(target)
    , _budget(budget)
    , _mountPoint(mountPoint == "/" ? std::string() : mountPoint)
    , _device(device)
    , _mountID(mountID)
{
}

bool SearchedVolume::lookAt(const std::string& path) const
{
    return _target.lookAt(systemPath(path), _mountID);
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

bool SearchedVolume::statFolder(const std::string& path, Stat& stat) const
{
    std::uint64_t mountID = 0;
    return statAt(AT_FDCWD, systemPath(path), stat, mountID) == 0 && stat.isFolder()
        && stat.device == _device && (!_mountID || mountID == _mountID);
}

Ref<const FolderIndex> SearchedVolume::index(
    const std::string& path, const Stat& stat, std::size_t limit) const
{
    return _folders.index(systemPath(path), stat, limit, _budget.secondsAtStart);
}

std::string pathOfEntry(const std::string& path, std::string_view name)
{
    std::string result;
    result.reserve(path.size() + 1 + name.size());
    return result.append(path).append(1, '/').append(name);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasMatch.h"

#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <fcntl.h>

namespace zef {

bool AliasMatch::lookAt(const char* path, std::uint64_t mountID)
{
    Stat stat;
    std::uint64_t foundMountID = 0;
    if (!*path || statAt(AT_FDCWD, path, stat, foundMountID) != 0
        || (mountID && foundMountID != mountID) || !isObject(stat, path))
        return false;
    _stat = stat;
    _path.clear();
    return _path.append(path);
}

// Where the birth time is another, the handle decides: overlayfs gives a file another birth time at
// its first write.
bool AliasMatch::isObject(const Stat& stat, const char* path) const
{
    if (stat.inode != _record.inode)
        return false;
    const bool hasBirthTimes = stat.hasBirthTime && _record.hasBirthTime;
    if (hasBirthTimes && stat.birthTime == _record.birthTime)
        return true;
    if (_record.handle.isKnown())
        return handleAt(AT_FDCWD, path) == _record.handle;
    return !hasBirthTimes;
}

FSRef AliasMatch::ref(std::uint64_t parentInode) const
{
    FSRef ref(_stat, parentInode);
    if (_record.handle.isKnown())
        ref.setHandle(_record.handle);
    return ref;
}

FileURL AliasMatch::url() const
{
    return FileURL::fromPath(_path.view(), _stat.isFolder() ? URLKind::folder : URLKind::file);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/ParentInodes.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

namespace zef {

std::uint64_t ParentInodes::inodeOfFolderOf(const FileURL& url)
{
    const Ref<const FolderPath> folder(&url.parentFolder());
    const auto now = Clock::shared().monotonicSeconds();
    if (const auto known = _folders.find(folder.get(), now))
        return known->inode;
    // The bytes end in a slash, so that a link to a folder is followed.
    Stat stat;
    PathBytes path;
    if (!path.append(folder->bytes()) || FileSystem::shared().statLink(path.text(), stat) != 0)
        return 0;
    _folders.insert(folder.get(), { folder, stat.inode }, now);
    return stat.inode;
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/ParentInodes.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

namespace zef {
namespace {

constexpr double secondsToTrustANumber = 0.1;

} // namespace

std::uint64_t ParentInodes::inodeOfFolderOf(const FileURL& url)
{
    const Ref<const FolderPath> folder(&url.parentFolder());
    const auto now = Clock::shared().monotonicSeconds();
    {
        std::lock_guard lock(_mutex);
        if (_folder == folder && now < _validUntil)
            return _inode;
    }
    // The bytes end in a slash, so that a link to a folder is followed.
    Stat stat;
    PathBytes path;
    if (!path.append(folder->bytes()) || FileSystem::shared().statLink(path.text(), stat) != 0)
        return 0;
    auto newFolder = folder;
    std::lock_guard lock(_mutex);
    std::swap(_folder, newFolder);
    _inode = stat.inode;
    _validUntil = now + secondsToTrustANumber;
    return _inode;
}

} // namespace zef

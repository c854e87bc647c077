// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/PinnedFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <cstring>

#include <fcntl.h>

namespace zef {

PinnedFolder::PinnedFolder(const FSRef& ref, const FileURL& url)
{
    PathBytes path;
    if (!url.fileSystemRepresentation(path) || !open(ref, path.text()))
        return;
    _path = path.view();
    if (!_path.ends_with('/'))
        _path += '/';
}

bool PinnedFolder::open(const FSRef& ref, const char* path)
{
    auto& reserve = DescriptorReserve::shared();
    const int folder = reserve.openAt(AT_FDCWD, path, O_PATH | O_DIRECTORY);
    Stat stat;
    if (folder >= 0 && statAt(folder, "", stat) == 0 && sameObject(stat, ref, path)) {
        _folder = folder;
        return true;
    }
    reserve.close(folder);
    return false;
}

PinnedFolder::~PinnedFolder()
{
    DescriptorReserve::shared().close(_folder);
}

std::optional<PinnedFolder::Entry> PinnedFolder::entry(const char* path) const
{
    if (_folder < 0 || std::strncmp(path, _path.data(), _path.size()) != 0)
        return std::nullopt;
    const char* name = path + _path.size();
    if (!*name || std::strchr(name, '/'))
        return std::nullopt;
    return Entry{ _folder, name };
}

} // namespace zef

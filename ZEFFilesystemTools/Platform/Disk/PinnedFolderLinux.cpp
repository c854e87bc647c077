// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/PinnedFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <cstring>
#include <utility>

#include <fcntl.h>

namespace zef {
namespace {

thread_local PinnedFolder* innermostView = nullptr;

} // namespace

PinnedFolder::PinnedFolder(const FSRef& ref, const FileURL& url)
{
    PathBytes path;
    if (!url.fileSystemRepresentation(path) || !open(ref, path.text()))
        return;
    _path = path.view();
    if (!_path.ends_with('/'))
        _path += '/';
    _outer = std::exchange(innermostView, this);
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
    if (_folder < 0)
        return;
    innermostView = _outer;
    DescriptorReserve::shared().close(_folder);
}

PinnedFolder::Pause::Pause()
    : _paused(std::exchange(innermostView, nullptr))
{
}

PinnedFolder::Pause::~Pause()
{
    innermostView = _paused;
}

bool PinnedFolder::find(const char* path, int& folder, const char*& name)
{
    const auto* view = innermostView;
    if (!view || std::strncmp(path, view->_path.data(), view->_path.size()) != 0)
        return false;
    const char* entry = path + view->_path.size();
    if (!*entry || std::strchr(entry, '/'))
        return false;
    folder = view->_folder;
    name = entry;
    return true;
}

} // namespace zef

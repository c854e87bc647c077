// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/OpenTrashes.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Paths/DataHome.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

namespace zef {
namespace {

// Opens the folder at `path`, links followed, or where there is none the nearest above it, whose
// path it is then.
Ref<ObjectDescriptor> openNearest(std::string& path)
{
    for (;;) {
        const int descriptor = DescriptorReserve::shared().openAt(
            AT_FDCWD, path.empty() ? "/" : path.c_str(), O_PATH | O_DIRECTORY);
        if (descriptor >= 0)
            return makeRef<ObjectDescriptor>(descriptor);
        if (errno != ENOENT || path.empty())
            return nullptr;
        path.resize(path.rfind('/'));
    }
}

} // namespace

OpenTrashes::OpenTrashes()
{
    const auto folder = dataHome();
    if (!folder)
        return;
    _homePath = *folder + "/Trash";
    lookForHome();
}

void OpenTrashes::lookForHome()
{
    auto path = _homePath;
    const auto nearest = openNearest(path);
    Stat stat;
    if (!nearest || nearest->stat(stat, _homeVolume.first) != 0 || _homeAscent.climb(nearest) != 0)
        return _homePath.clear();
    _homeVolume.second = stat.device;
    _homeAscent.closeTop();
    // Not by another look: another program may just have made it.
    _hasHomeTrash = path == _homePath;
}

Expected<OpenTrash*, TrashProblem> OpenTrashes::find(const SourceFolder& folder)
{
    auto& known = _trashes[{ folder.mountID(), folder.numbers().device }];
    if (!known) {
        auto opened = open(folder);
        if (!opened)
            return opened.error();
        known = *std::move(opened);
    }
    return known.get();
}

OpenTrash::Opened OpenTrashes::open(const SourceFolder& folder) const
{
    if (isOnVolumeOfHome(folder))
        return OpenTrash::openHome(_homePath);
    if (folder.ascent().isInNestedVolume())
        return TrashProblem{ .error = EXDEV, .text = "its volume has no trash" };
    return OpenTrash::openOnVolume(*folder.ascent().top());
}

bool OpenTrashes::isOnVolumeOfHome(const SourceFolder& folder) const
{
    return !_homePath.empty() && _homeVolume == Volume(folder.mountID(), folder.numbers().device);
}

bool OpenTrashes::isInTrash(const FolderAscent& ascent) const
{
    if (_hasHomeTrash && ascent.contains(_homeAscent.folders().front()))
        return true;
    return std::any_of(_trashes.begin(), _trashes.end(), [&](const auto& entry) {
        return entry.second && ascent.contains(entry.second->ascent().folders().front());
    });
}

bool OpenTrashes::contains(const ObjectNumbers& folder) const
{
    return _homeAscent.contains(folder)
        || std::any_of(_trashes.begin(), _trashes.end(), [&](const auto& entry) {
               return entry.second && entry.second->ascent().contains(folder);
           });
}

int OpenTrashes::synchronise()
{
    for (auto& [volume, trash] : _trashes) {
        if (const int error = trash ? trash->infos().synchronise() : 0)
            return error;
    }
    return 0;
}

} // namespace zef

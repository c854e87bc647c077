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
    if (folder.empty())
        return;
    _homePath = folder + "/Trash";
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

TrashProblem OpenTrashes::find(const SourceFolder& folder, OpenTrash*& place)
{
    auto& found = _places[{ folder.mountID(), folder.numbers().device }];
    TrashProblem problem;
    if (!found && isOnVolumeOfHome(folder))
        problem = OpenTrash::openHome(_homePath, found);
    else if (!found && folder.ascent().isInNestedVolume())
        problem = { .error = EXDEV, .text = "its volume has no trash" };
    else if (!found)
        problem = OpenTrash::openOnVolume(*folder.ascent().top(), found);
    place = found.get();
    return problem;
}

bool OpenTrashes::isOnVolumeOfHome(const SourceFolder& folder) const
{
    return !_homePath.empty() && _homeVolume == Volume(folder.mountID(), folder.numbers().device);
}

bool OpenTrashes::isInTrash(const FolderAscent& ascent) const
{
    if (_hasHomeTrash && ascent.contains(_homeAscent.folders().front()))
        return true;
    return std::any_of(_places.begin(), _places.end(), [&](const auto& entry) {
        return entry.second && ascent.contains(entry.second->ascent().folders().front());
    });
}

bool OpenTrashes::contains(const ObjectNumbers& folder) const
{
    return _homeAscent.contains(folder)
        || std::any_of(_places.begin(), _places.end(), [&](const auto& entry) {
               return entry.second && entry.second->ascent().contains(folder);
           });
}

int OpenTrashes::synchronise()
{
    for (auto& [volume, place] : _places) {
        if (const int error = place ? place->infos().synchronise() : 0)
            return error;
    }
    return 0;
}

} // namespace zef

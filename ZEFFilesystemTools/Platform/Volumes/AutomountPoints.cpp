// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/AutomountPoints.h"

#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>
#include <utility>

namespace zef {
namespace {

constexpr std::string_view automountType = "autofs";

bool isBelow(std::string_view path, std::string_view folder)
{
    if (folder == "/")
        return path.size() > 1;
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

// What `path` lies on; of several mounts at one place the last one covers the others.
const Mount* mountOf(std::string_view path, const std::vector<Mount>& mounts)
{
    const Mount* deepest = nullptr;
    for (const auto& mount : mounts) {
        const bool contains = path == mount.folder || isBelow(path, mount.folder);
        if (contains && (!deepest || mount.folder.size() >= deepest->folder.size()))
            deepest = &mount;
    }
    return deepest;
}

} // namespace

AutomountPoints::AutomountPoints(MountReader reader)
    : _readMounts(std::move(reader))
{
}

bool AutomountPoints::areAbove(std::string_view path)
{
    const auto known = folders();
    const bool isAffected = std::any_of(known.begin(), known.end(),
        [path](const std::string& folder) { return isBelow(path, folder); });
    if (!isAffected)
        return false;
    const auto mounts = _readMounts();
    const auto* mount = mountOf(path, mounts);
    // A look at the place itself mounts nothing (AT_NO_AUTOMOUNT).
    return mount && mount->type == automountType && isBelow(path, mount->folder);
}

std::vector<std::string> AutomountPoints::folders()
{
    const auto now = Clock::shared().monotonicSeconds();
    if (auto known = _folders.find({}, now))
        return *std::move(known);
    std::vector<std::string> found;
    for (auto& mount : _readMounts()) {
        if (mount.type == automountType)
            found.push_back(std::move(mount.folder));
    }
    _folders.insert({}, found, now);
    return found;
}

} // namespace zef

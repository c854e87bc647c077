// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasSearch.h"

#include "ZEFFilesystemTools/Platform/AliasData/BreadthFirstSearch.h"
#include "ZEFFilesystemTools/Platform/AliasData/RecordedPath.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <algorithm>
#include <unordered_set>

#include <fcntl.h>

namespace zef {
namespace {

constexpr std::size_t mostEntries = 20000;
constexpr double mostSeconds = 0.2;

} // namespace

AliasSearch::AliasSearch(const Means& means, const AliasRecord& record)
    : _means(means)
    , _record(record)
    , _target(record)
    , _budget{ .entries = mostEntries, .secondsAtStart = 0, .secondsAtEnd = 0 }
{
}

FileError AliasSearch::resolve(FSRef& ref, FileURL& url)
{
    if (lookAtLastPlace()) {
        ref = _target.ref(_record.parentInode());
        url = _target.url();
        return FileError::none;
    }
    _budget.secondsAtStart = Clock::shared().monotonicSeconds();
    _budget.secondsAtEnd = _budget.secondsAtStart + mostSeconds;
    // Where numbers are all there is, only the place tells an object from others.
    if (!_record.hasStrongIdentity() || searchMounts() != Progress::found)
        return FileError::notFound;
    ref = _target.ref();
    url = _target.url();
    return FileError::none;
}

bool AliasSearch::lookAtLastPlace()
{
    PathBytes path;
    return _record.path(path) && _target.lookAt(path.text()) && !isContradictedAt(path);
}

// The cheap question comes first and nearly always decides.
bool AliasSearch::isContradictedAt(const PathBytes& path) const
{
    const auto& volume = _record.volume;
    if (_record.hasStrongIdentity() && volume.fileSystemID == fileSystemIDAt(path.view()))
        return false;
    Stat stat;
    std::uint64_t mountID = 0;
    return statAt(AT_FDCWD, volume.mountPoint.c_str(), stat, mountID) != 0
        || !isSameVolume(volume.mountPoint, stat, mountID);
}

std::uint64_t AliasSearch::fileSystemIDAt(std::string_view path) const
{
    const auto device = _target.stat().device;
    std::uint64_t number = 0;
    if (_means.evidences.findFileSystemID(device, number))
        return number;
    // The object itself may be a link, which the question would follow.
    const bool isFolder = _target.stat().isFolder() || _record.chain.empty();
    const std::string folder(isFolder ? path : path.substr(0, path.rfind('/') + 1));
    return _means.evidences.fileSystemID(folder.c_str(), device);
}

AliasSearch::Progress AliasSearch::searchMounts()
{
    auto progress = searchMount(_record.volume.mountPoint);
    if (progress != Progress::open)
        return progress;
    std::unordered_set<std::string> seen{ _record.volume.mountPoint };
    for (const auto& mount : readMounts()) {
        if (mount.type != _record.volume.type || !seen.insert(mount.folder).second)
            continue;
        progress = searchMount(mount.folder);
        if (progress != Progress::open)
            return progress;
    }
    return Progress::open;
}

AliasSearch::Progress AliasSearch::searchMount(const std::string& mountPoint)
{
    Stat stat;
    std::uint64_t mountID = 0;
    if (statAt(AT_FDCWD, mountPoint.c_str(), stat, mountID) != 0
        || !isSameVolume(mountPoint, stat, mountID))
        return Progress::open;
    const auto progress = openHandle(mountPoint, stat, mountID);
    if (progress != Progress::open)
        return progress;
    const SearchedVolume volume(_means.folders, _target, _budget, mountPoint, stat.device, mountID);
    RecordedPath chain(volume);
    if (chain.follow())
        return Progress::found;
    if (_budget.isUsedUp() || !stat.isFolder())
        return Progress::open;
    return BreadthFirstSearch(volume).searchAround(chain.folder()) ? Progress::found
                                                                   : Progress::open;
}

bool AliasSearch::isSameVolume(
    const std::string& mountPoint, const Stat& stat, std::uint64_t mountID) const
{
    VolumeIdentity evidence;
    return _means.evidences.evidence(mountPoint, stat.device, mountID, evidence)
        && _record.volume.matches(evidence);
}

// Gone counts only where the handle was made, which the evidence says of this volume.
AliasSearch::Progress AliasSearch::openHandle(
    const std::string& mountPoint, const Stat& stat, std::uint64_t mountID)
{
    if (!_record.handle.isDecodable || !_means.opener.mayOpen())
        return Progress::open;
    Stat object;
    object.device = stat.device;
    object.inode = _record.inode;
    FSRef ref(object);
    ref.setHandle(_record.handle);
    const auto near = FileURL::fromPath(mountPoint, URLKind::folder)
                          .appendingPathComponent("object", URLKind::file);
    Ref<ObjectDescriptor> descriptor;
    switch (_means.opener.open(ref, near, descriptor)) {
    case HandleOpener::Outcome::gone:
        return Progress::gone;
    case HandleOpener::Outcome::unknown:
        return Progress::open;
    case HandleOpener::Outcome::opened:
        break;
    }
    PathBytes path;
    const bool isThere = descriptor->currentPath(path) && _target.lookAt(path.text(), mountID);
    return isThere ? Progress::found : Progress::open;
}

} // namespace zef

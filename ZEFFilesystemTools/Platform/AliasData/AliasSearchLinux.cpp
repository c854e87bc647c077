// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasSearch.h"

#include "ZEFFilesystemTools/Platform/AliasData/BreadthFirstSearch.h"
#include "ZEFFilesystemTools/Platform/AliasData/RecordedPath.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <unordered_set>

#include <fcntl.h>

// The record's own path is tried first and nearly always right; it counts only if what lies there
// is the object, on a volume with the recorded identity. If not, every mount of the recorded type
// whose identity matches is searched, the recorded mount point first, in three steps from cheap to
// dear: the object's handle, the recorded path with renamed folders found by their numbers, and a
// breadth-first search that starts where the recorded path ended. One budget covers all mounts. An
// object is accepted only by `AliasMatch`, so that no step can yield another one; a handle that
// proves the object gone ends the search.

namespace zef {
namespace {

constexpr std::size_t mostEntries = 20000;
constexpr double mostSeconds = 0.2;

} // namespace

AliasSearch::AliasSearch(const Means& means, const AliasRecord& record)
    : _means(means)
    , _record(record)
    , _match(record)
{
}

Expected<AliasData::Target> AliasSearch::resolve()
{
    if (lookAtLastPlace())
        return AliasData::Target{ _match.ref(_record.parentInode()), _match.url() };
    // Where numbers are all there is, only the place identifies an object.
    if (!_record.hasStrongIdentity() || searchMounts() != Progress::found)
        return FileError::notFound;
    return AliasData::Target{ _match.ref(), _match.url() };
}

bool AliasSearch::lookAtLastPlace()
{
    PathBytes path;
    return _record.path(path) && _match.lookAt(path.text()) && !isContradictedAt(path);
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
    const auto device = _match.stat().device;
    if (const auto known = _means.identities.knownFileSystemID(device))
        return *known;
    // The object itself may be a link, which the question would follow.
    const bool isFolder = _match.stat().isFolder() || _record.chain.empty();
    const std::string folder(isFolder ? path : path.substr(0, path.rfind('/') + 1));
    return _means.identities.fileSystemID(folder.c_str(), device);
}

AliasSearch::Progress AliasSearch::searchMounts()
{
    SearchBudget budget{ .entries = mostEntries, .seconds = mostSeconds };
    auto progress = searchMount(_record.volume.mountPoint, budget);
    if (progress != Progress::open)
        return progress;
    std::unordered_set<std::string> seen{ _record.volume.mountPoint };
    for (const auto& mount : readMounts()) {
        if (mount.type != _record.volume.type || !seen.insert(mount.folder).second)
            continue;
        progress = searchMount(mount.folder, budget);
        if (progress != Progress::open)
            return progress;
    }
    return Progress::open;
}

AliasSearch::Progress AliasSearch::searchMount(const std::string& mountPoint, SearchBudget& budget)
{
    Stat stat;
    std::uint64_t mountID = 0;
    if (statAt(AT_FDCWD, mountPoint.c_str(), stat, mountID) != 0
        || !isSameVolume(mountPoint, stat, mountID))
        return Progress::open;
    const auto progress = openHandle(mountPoint, stat, mountID);
    if (progress != Progress::open)
        return progress;
    const SearchedVolume volume(_means.indexes, _match, budget, mountPoint, stat.device, mountID);
    RecordedPath path(volume);
    if (path.follow())
        return Progress::found;
    if (budget.isUsedUp() || !stat.isFolder())
        return Progress::open;
    return BreadthFirstSearch(volume).searchAround(path.folder()) ? Progress::found
                                                                  : Progress::open;
}

bool AliasSearch::isSameVolume(
    const std::string& mountPoint, const Stat& stat, std::uint64_t mountID) const
{
    const auto identity = _means.identities.identity(mountPoint, stat.device, mountID);
    return identity && _record.volume.matches(*identity);
}

// Gone counts only on the volume where the handle was made, as this one's identity says.
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
    const auto opened = _means.opener.open(ref, near);
    if (!opened.object)
        return opened.outcome == HandleOpener::Outcome::gone ? Progress::gone : Progress::open;
    PathBytes path;
    const bool isThere = opened.object->currentPath(path) && _match.lookAt(path.text(), mountID);
    return isThere ? Progress::found : Progress::open;
}

} // namespace zef

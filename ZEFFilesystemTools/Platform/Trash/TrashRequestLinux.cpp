// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashRequest.h"

#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <unordered_set>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

// A request is all or nothing, in two passes.
//
// `validate` looks at every file without touching it: it opens the file's folder, checks that the
// entry is the very object of the reference (looking for it elsewhere once if it isn't), asks for
// every permission that a rename needs, and finds the trash of its volume. One problem refuses the
// request. Duplicates and what lies in a folder of the request are dropped.
//
// `perform` moves in batches: first the records of a batch, which reserve the names in the trash,
// then one wait for the disk, then the files. An error takes back in reverse order what was done.
// Only one source folder is open at a time, so that a request needs few descriptors.

namespace zef {
namespace {

// So many records are written before the first of their files is moved: they share one wait for the
// disk, and after a power cut no more than this are without a file.
constexpr std::size_t batchSize = 1024;

// Whether another user's files may be taken out of a sticky folder (CAP_FOWNER).
bool mayActForOwners()
{
    __user_cap_header_struct header{ _LINUX_CAPABILITY_VERSION_3, 0 };
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
    return ::syscall(SYS_capget, &header, data) == 0
        && data[CAP_TO_INDEX(CAP_FOWNER)].effective & CAP_TO_MASK(CAP_FOWNER);
}

bool isOwn(int folder, const std::string& name)
{
    struct stat info { };
    return ::fstatat(folder, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0
        && info.st_uid == ::geteuid();
}

bool isObject(const FSRef& ref, const Stat& stat, int folder, const std::string& name)
{
    if (!ref.hasNumbersOf(stat))
        return false;
    if (!stat.hasBirthTime || !ref.hasBirthTime() || stat.birthTime == ref.birthTime())
        return true;
    return ref.hasHandle() && handleAt(folder, name.c_str()) == ref.handle();
}

bool isMountPoint(const SourceFolder& folder, const Stat& stat, std::uint64_t mountID)
{
    return mountID ? mountID != folder.mountID() : stat.device != folder.numbers().device;
}

} // namespace

TrashRequest::TrashRequest(TrashRefusal& refusal)
    : _refusal(refusal)
    , _date(Clock::shared().now())
{
    _refusal = {};
}

bool TrashRequest::validate(std::span<const TrashEntry> entries)
{
    for (std::size_t index = 0; index < entries.size(); ++index) {
        if (const auto problem = add(entries[index], index))
            return refuse(index, problem);
    }
    dropCovered();
    return true;
}

TrashProblem TrashRequest::add(const TrashEntry& entry, std::size_t index)
{
    if (entry.ref.isEmpty())
        return { .error = ENOENT };
    const auto problem = addAt(entry.lastKnown, entry, index);
    if (problem.error != ESTALE)
        return problem;
    const auto found = Locator::shared().locate(entry.ref, entry.lastKnown);
    if (!found)
        return { .error = ENOENT };
    return addAt(found, entry, index);
}

// ESTALE if the object isn't there.
TrashProblem TrashRequest::addAt(const FileURL& url, const TrashEntry& entry, std::size_t index)
{
    if (!url)
        return { .error = ESTALE };
    const auto opened = open(url);
    if (!opened)
        return opened.error();
    auto& folder = **opened;
    const std::string name(url.name());
    Stat stat;
    std::uint64_t mountID = 0;
    // The root is the one without a name.
    const int error = statAt(folder.descriptor(), name.empty() ? "." : name.c_str(), stat, mountID);
    if (error == ENOENT || (!error && !isObject(entry.ref, stat, folder.descriptor(), name)))
        return { .error = ESTALE };
    if (error)
        return { .error = error };
    const auto trash = check(folder, name, stat, mountID);
    if (!trash)
        return trash.error();
    _items.emplace_back(index, folder, name, stat, **trash);
    return {};
}

Expected<SourceFolder*, TrashProblem> TrashRequest::open(const FileURL& url)
{
    auto path = url.deletingLastPathComponent().path();
    auto& known = _folders[path];
    if (!known)
        known = std::make_unique<SourceFolder>(std::move(path));
    if (_openFolder && _openFolder != known.get())
        _openFolder->close();
    _openFolder = known.get();
    if (const int error = known->open())
        return TrashProblem{ .error = error == ENOENT || error == ENOTDIR ? ESTALE : error };
    return known.get();
}

Expected<OpenTrash*, TrashProblem> TrashRequest::check(
    SourceFolder& folder, const std::string& name, const Stat& stat, std::uint64_t mountID)
{
    if (name.empty())
        return TrashProblem{ .error = EBUSY, .text = "it is the root of all files" };
    if (isMountPoint(folder, stat, mountID))
        return TrashProblem{ .error = EBUSY, .text = "a volume is mounted there" };
    if (const auto problem = folder.examine())
        return problem;
    if (folder.isOthersStickyFolder() && !isOwn(folder.descriptor(), name) && !mayActForOwners())
        return TrashProblem{ .error = EPERM };
    const auto trash = _trashes.find(folder);
    if (!trash)
        return trash;
    if (_trashes.isInTrash(folder.ascent()))
        return TrashProblem{ .error = EEXIST, .text = "it is in the trash already" };
    const auto problem = stat.isFolder() ? checkFolder(folder, name, stat) : TrashProblem();
    return problem ? problem : trash;
}

TrashProblem TrashRequest::checkFolder(
    const SourceFolder& folder, const std::string& name, const Stat& stat)
{
    if (_trashes.contains(ObjectNumbers::of(stat))
        || (folder.ascent().startsAtTop() && OpenTrash::isNameOfTrash(name)))
        return { .error = EBUSY, .text = "the trash is in it" };
    // Its "..", too, gets another value.
    if (::faccessat(folder.descriptor(), name.c_str(), W_OK, AT_EACCESS | AT_SYMLINK_NOFOLLOW) != 0)
        return { .error = errno };
    if (isMountedBelow(folder.pathOfEntry(name)))
        return { .error = EBUSY, .text = "a volume is mounted in it" };
    return {};
}

// It would move along, and whoever empties the trash would delete what is on it.
bool TrashRequest::isMountedBelow(const std::string& path)
{
    if (!_mounts)
        _mounts = readMounts();
    return std::any_of(
        _mounts->begin(), _mounts->end(), [&](const Mount& mount) { return mount.isBelow(path); });
}

// What is in the request twice goes once, and what lies in a folder of the request goes with it.
void TrashRequest::dropCovered()
{
    using Numbers = std::unordered_set<ObjectNumbers, ObjectNumbers::Hash>;
    Numbers folders;
    for (const auto& item : _items) {
        if (item.isFolder())
            folders.insert(item.numbers());
    }
    Numbers seen;
    std::erase_if(_items, [&](const TrashItem& item) {
        const auto& above = item.folder().ascent().folders();
        return !seen.insert(item.numbers()).second
            || std::any_of(above.begin(), above.end(),
                [&](const auto& folder) { return folders.contains(folder); });
    });
}

bool TrashRequest::perform()
{
    const Items all(_items);
    for (std::size_t begin = 0; begin < all.size(); begin += batchSize) {
        const auto count = std::min(batchSize, all.size() - begin);
        if (const int error = performBatch(all.subspan(begin, count))) {
            refuse(_current, { .error = error });
            undo();
            return false;
        }
    }
    return true;
}

// A record comes to the disk before its file is moved, so that no file is ever in the trash
// without one.
int TrashRequest::performBatch(Items items)
{
    for (auto& item : items) {
        _current = item.index();
        if (const int error = item.writeInfo(_date))
            return error;
    }
    if (const int error = _trashes.synchronise())
        return error;
    for (auto& item : items) {
        _current = item.index();
        if (const int error = openFolderOf(item))
            return error;
        if (const int error = item.move(_date))
            return error;
    }
    return 0;
}

int TrashRequest::openFolderOf(const TrashItem& item)
{
    if (_openFolder && _openFolder != &item.folder())
        _openFolder->close();
    _openFolder = &item.folder();
    return _openFolder->open();
}

void TrashRequest::undo()
{
    std::for_each(_items.rbegin(), _items.rend(), [this](TrashItem& item) {
        const int error = item.isMoved() ? openFolderOf(item) : 0;
        if (error || item.undo() != 0)
            _refusal.isUndone = false;
    });
}

bool TrashRequest::refuse(std::size_t index, TrashProblem problem)
{
    _refusal.index = index;
    _refusal.error = problem.error;
    _refusal.reason = problem.text ? problem.text : std::generic_category().message(problem.error);
    return false;
}

} // namespace zef

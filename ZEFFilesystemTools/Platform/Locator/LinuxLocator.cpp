// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

#include <algorithm>
#include <optional>

#include <fcntl.h>
#include <sys/resource.h>

namespace zef {
namespace {

std::size_t defaultDescriptorBudget()
{
    struct rlimit limit;
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 64;
    return std::clamp<rlim_t>(limit.rlim_cur / 4, 64, 4096);
}

bool isComplete(const FSRef& ref)
{
    return ref.hasHandle() && ref.parentInode();
}

struct Volume {
    std::uint32_t device;
    std::uint64_t mountID;
};

// The one that `path` is on; a link to a folder is followed.
std::optional<Volume> volumeAt(std::string_view path)
{
    PathBytes bytes;
    if (path.empty() || !bytes.append(path))
        return std::nullopt;
    PathBytes folder = bytes;
    Stat stat;
    std::uint64_t mountID = 0;
    const bool isThere = (folder.append("/") && statAt(AT_FDCWD, folder.text(), stat, mountID) == 0)
        || statAt(AT_FDCWD, bytes.text(), stat, mountID) == 0;
    return isThere ? std::optional(Volume{ stat.device, mountID }) : std::nullopt;
}

} // namespace

Locator& Locator::system()
{
    return immortal<LinuxLocator>();
}

LinuxLocator::LinuxLocator()
    : _tables(defaultDescriptorBudget())
{
    // Made here so that it is filled while there are still descriptors.
    DescriptorReserve::shared().setGiver([] { return shared().giveBackOneDescriptor(); });
}

bool LinuxLocator::makeRef(const FileURL& url, const Stat& stat, FSRef& ref)
{
    if (!url)
        return false;
    ref = FSRef(stat);
    return true;
}

void LinuxLocator::retain(FSRef& ref, const FileURL& url)
{
    if (ref.isEmpty())
        return;
    _indexes.forgetOld();
    const auto place = _tables.retainHeld(ref) ? url : take(ref, url);
    if (ref.isFolder())
        _tables.enterFolder(ref, place);
}

void LinuxLocator::release(const FSRef& ref)
{
    if (ref.isEmpty())
        return;
    _indexes.forgetOld();
    if (ref.isFolder())
        _tables.leaveFolder(ref);
    else
        _tables.releaseHeld(ref);
}

FileURL LinuxLocator::locate(const FSRef& ref, const FileURL& lastKnown)
{
    _indexes.forgetOld();
    return ObjectSearch({ _tables, _indexes, _opener, _policy }).find(ref, lastKnown);
}

void LinuxLocator::releaseVolume(std::string_view path)
{
    const auto volume = volumeAt(path);
    if (!volume)
        return;
    _policy.bar(volume->device, volume->mountID);
    _tables.dropHeldIf([&](const HeldObject& object) {
        return object.ref.device() == volume->device
            || (volume->mountID && object.mountID == volume->mountID);
    });
}

bool LinuxLocator::giveBackOneDescriptor()
{
    return _tables.dropLeastWanted();
}

void LinuxLocator::setDescriptorBudget(std::size_t budget)
{
    _tables.setBudget(budget);
}

std::size_t LinuxLocator::descriptorBudget() const
{
    return _tables.budget();
}

std::size_t LinuxLocator::heldDescriptorCount() const
{
    return _tables.heldCount();
}

void LinuxLocator::setDescriptorPolicy(DescriptorPolicy policy)
{
    _policy.setPolicy(policy);
    _tables.dropHeldIf([&](const HeldObject& object) {
        return !_policy.mayHold(*object.descriptor, object.ref.device(), object.mountID);
    });
}

bool LinuxLocator::wantsDescriptor(const FSRef& ref) const
{
    return _policy.policy() != DescriptorPolicy::never && _tables.hasRoom(ref.isFolder());
}

// Returns where the object is, or `lastKnown` if that isn't known.
FileURL LinuxLocator::take(FSRef& ref, const FileURL& lastKnown)
{
    if (takeAt(ref, lastKnown))
        return lastKnown;
    auto found = locate(ref, lastKnown);
    const bool isElsewhere = found && !(found == lastKnown);
    return isElsewhere && takeAt(ref, found) ? found : lastKnown;
}

// False if the object isn't at `place`.
bool LinuxLocator::takeAt(FSRef& ref, const FileURL& place)
{
    const bool wants = wantsDescriptor(ref);
    if (!wants && isComplete(ref))
        return true;
    PathBytes path;
    if (!place.fileSystemRepresentation(path))
        return false;
    // Without a descriptor to spare the reference is completed all the same.
    auto object = wants ? ObjectDescriptor::open(path.text()) : nullptr;
    return object ? holdAt(ref, place, std::move(object)) : completeAt(ref, place, path.text());
}

bool LinuxLocator::holdAt(FSRef& ref, const FileURL& place, Ref<ObjectDescriptor> object)
{
    Stat stat;
    std::uint64_t mountID = 0;
    if (object->stat(stat, mountID) != 0 || !object->isObject(ref, stat))
        return false;
    if (!ref.hasHandle())
        ref.setHandle(object->handle());
    if (!ref.parentInode())
        ref.setParentInode(_parentInodes.inodeOfFolderOf(place));
    if (_policy.mayHold(*object, stat.device, mountID))
        _tables.hold({ ref, std::move(object), mountID });
    return true;
}

bool LinuxLocator::completeAt(FSRef& ref, const FileURL& place, const char* path)
{
    // In this order: the look at the object then speaks for its handle as well.
    const auto handle = ref.hasHandle() ? ref.handle() : FileSystem::shared().handle(path);
    Stat stat;
    if (FileSystem::shared().statLink(path, stat) != 0 || !sameObject(stat, ref, path))
        return false;
    ref.setHandle(handle);
    if (!ref.parentInode())
        ref.setParentInode(_parentInodes.inodeOfFolderOf(place));
    return true;
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/LocatorTables.h"

#include <array>

// Every descriptor that is taken out of a table is let go only after the lock: closing the last one
// of a deleted file makes the file system free all of its blocks.

namespace zef {
namespace {

// More than one for each that comes, so that the sweep gets round; a system call each.
constexpr std::size_t objectsSweptAtOnce = 2;

void complete(FSRef& ref, const FSRef& known)
{
    if (!ref.hasHandle())
        ref.setHandle(known.handle());
    if (!ref.parentInode())
        ref.setParentInode(known.parentInode());
}

} // namespace

LocatorTables::LocatorTables(std::size_t budget)
{
    _held.setBudget(budget);
}

bool LocatorTables::retainHeld(FSRef& ref)
{
    std::lock_guard lock(_mutex);
    auto* object = _held.find(ref);
    if (!object)
        return false;
    complete(ref, object->ref);
    ++object->uses;
    return true;
}

void LocatorTables::releaseHeld(const FSRef& ref)
{
    Ref<ObjectDescriptor> removed;
    std::lock_guard lock(_mutex);
    auto* object = _held.find(ref);
    if (object && --object->uses == 0)
        removed = _held.remove(ref);
}

std::optional<HeldObject> LocatorTables::findHeld(const FSRef& ref)
{
    std::lock_guard lock(_mutex);
    const auto* found = _held.find(ref);
    return found ? std::optional(*found) : std::nullopt;
}

bool LocatorTables::hasRoom(bool isFolder) const
{
    std::lock_guard lock(_mutex);
    return _held.hasRoom(isFolder);
}

void LocatorTables::hold(HeldObject object)
{
    {
        Ref<ObjectDescriptor> removed;
        std::lock_guard lock(_mutex);
        removed = _held.insert(std::move(object));
    }
    sweep();
}

void LocatorTables::holdKnownFolder(HeldObject folder)
{
    Ref<ObjectDescriptor> removed;
    std::lock_guard lock(_mutex);
    if (_folders.find(ObjectNumbers::of(folder.ref)) && !_held.find(folder.ref))
        removed = _held.insert(std::move(folder));
}

void LocatorTables::dropHeld(const FSRef& ref)
{
    Ref<ObjectDescriptor> removed;
    std::lock_guard lock(_mutex);
    removed = _held.remove(ref);
}

void LocatorTables::dropHeldIf(const std::function<bool(const HeldObject&)>& shouldDrop)
{
    std::vector<HeldObject> objects;
    {
        std::lock_guard lock(_mutex);
        objects = _held.copyAll();
    }
    std::erase_if(objects, [&](const auto& object) { return !shouldDrop(object); });
    std::lock_guard lock(_mutex);
    for (const auto& object : objects)
        _held.remove(object);
}

bool LocatorTables::dropLeastWanted()
{
    Ref<ObjectDescriptor> removed;
    std::lock_guard lock(_mutex);
    removed = _held.removeLeastWanted();
    return static_cast<bool>(removed);
}

void LocatorTables::setBudget(std::size_t budget)
{
    HeldDescriptors::Descriptors removed;
    std::lock_guard lock(_mutex);
    removed = _held.setBudget(budget);
}

std::size_t LocatorTables::budget() const
{
    std::lock_guard lock(_mutex);
    return _held.budget();
}

std::size_t LocatorTables::heldCount() const
{
    std::lock_guard lock(_mutex);
    return _held.count();
}

void LocatorTables::enterFolder(const FSRef& ref, const FileURL& url)
{
    std::lock_guard lock(_mutex);
    _folders.enter(ref, url);
}

void LocatorTables::leaveFolder(const FSRef& ref)
{
    Ref<ObjectDescriptor> removed;
    std::lock_guard lock(_mutex);
    if (_folders.leave(ref))
        removed = _held.remove(ref);
}

void LocatorTables::learnFolder(const FSRef& ref, const FileURL& url)
{
    std::lock_guard lock(_mutex);
    _folders.learn(ref, url);
}

bool LocatorTables::isKnownFolder(const FSRef& ref) const
{
    std::lock_guard lock(_mutex);
    return _folders.find(ObjectNumbers::of(ref));
}

std::optional<KnownFolder> LocatorTables::findFolder(const ObjectNumbers& numbers) const
{
    std::lock_guard lock(_mutex);
    const auto* found = _folders.find(numbers);
    return found ? std::optional(*found) : std::nullopt;
}

std::vector<KnownFolder> LocatorTables::recentFolders(std::uint32_t device, std::size_t limit) const
{
    std::lock_guard lock(_mutex);
    return _folders.recentOnDevice(device, limit);
}

void LocatorTables::sweep()
{
    std::array<HeldObject, objectsSweptAtOnce> objects;
    std::size_t count = 0;
    {
        std::lock_guard lock(_mutex);
        count = _held.copyInTurn(objects);
    }
    for (std::size_t index = 0; index < count; ++index) {
        if (!objects[index].descriptor->isNameless())
            continue;
        std::lock_guard lock(_mutex);
        _held.remove(objects[index]);
    }
}

} // namespace zef

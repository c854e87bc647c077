// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/HeldDescriptors.h"

#include <algorithm>

// Objects lie on two shelves, folders and others, each in the order of use, and are found through
// one index by their numbers. Objects with the same numbers may be there at once, as long as an old
// one's descriptor is held after its number went to another.

namespace zef {
namespace {

// Both were taken of an object that had these numbers; the handle says more than the birth time,
// which overlayfs changes at the first write.
bool referToSameObject(const FSRef& one, const FSRef& other)
{
    if (!one.hasNumbersOf(other))
        return false;
    if (one.hasHandle() && other.hasHandle())
        return one.handle() == other.handle();
    return !one.hasBirthTime() || !other.hasBirthTime() || one.birthTime() == other.birthTime();
}

} // namespace

HeldDescriptors::Descriptors HeldDescriptors::setBudget(std::size_t budget)
{
    _budget = budget;
    _others.setLimit(budget / 2);
    _folders.setLimit(budget - budget / 2);
    Descriptors removed;
    for (auto* shelf : { &_folders, &_others }) {
        while (shelf->isOverfull())
            removed.push_back(removeFromShelf(shelf->last()));
    }
    return removed;
}

bool HeldDescriptors::hasRoom(bool isFolder) const
{
    return isFolder ? _folders.limit() > 0 : !_others.isFull();
}

HeldObject* HeldDescriptors::find(const FSRef& ref)
{
    const auto found = findEntry(ref);
    if (found == _index.end())
        return nullptr;
    shelf(found->second->ref.isFolder()).markUsed(found->second);
    return &*found->second;
}

Ref<ObjectDescriptor> HeldDescriptors::insert(HeldObject object)
{
    const bool isFolder = object.ref.isFolder();
    if (!hasRoom(isFolder))
        return std::move(object.descriptor);
    if (auto* held = find(object.ref)) {
        held->uses += object.uses;
        return std::move(object.descriptor);
    }
    auto& place = shelf(isFolder);
    Ref<ObjectDescriptor> removed;
    if (place.isFull())
        removed = removeFromShelf(place.last());
    const auto numbers = ObjectNumbers::of(object.ref);
    _index.emplace(numbers, place.add(std::move(object)));
    return removed;
}

Ref<ObjectDescriptor> HeldDescriptors::remove(const FSRef& ref)
{
    const auto found = findEntry(ref);
    return found == _index.end() ? nullptr : removeEntry(found);
}

Ref<ObjectDescriptor> HeldDescriptors::remove(const HeldObject& object)
{
    const auto found = findEntry(object.ref);
    if (found == _index.end() || !(found->second->descriptor == object.descriptor))
        return nullptr;
    return removeEntry(found);
}

Ref<ObjectDescriptor> HeldDescriptors::removeLeastWanted()
{
    auto& place = _folders.count() ? _folders : _others;
    return place.count() ? removeFromShelf(place.last()) : nullptr;
}

std::size_t HeldDescriptors::copyInTurn(std::span<HeldObject> copies)
{
    const auto wanted = std::min(copies.size(), count());
    const auto others = std::min(_others.count(), wanted / 2);
    const auto folders = std::min(_folders.count(), wanted - others);
    for (std::size_t index = 0; index < wanted; ++index)
        copies[index] = *shelf(index < folders).nextInTurn();
    return wanted;
}

std::vector<HeldObject> HeldDescriptors::copyAll()
{
    std::vector<HeldObject> copies(_folders.begin(), _folders.end());
    copies.insert(copies.end(), _others.begin(), _others.end());
    return copies;
}

HeldDescriptors::Index::iterator HeldDescriptors::findEntry(const FSRef& ref)
{
    const auto [begin, end] = _index.equal_range(ObjectNumbers::of(ref));
    const auto found = std::find_if(
        begin, end, [&](const auto& entry) { return referToSameObject(entry.second->ref, ref); });
    return found == end ? _index.end() : found;
}

Ref<ObjectDescriptor> HeldDescriptors::removeEntry(Index::iterator entry)
{
    const auto object = entry->second;
    _index.erase(entry);
    return shelf(object->ref.isFolder()).take(object).descriptor;
}

Ref<ObjectDescriptor> HeldDescriptors::removeFromShelf(Iterator object)
{
    const auto [begin, end] = _index.equal_range(ObjectNumbers::of(object->ref));
    return removeEntry(
        std::find_if(begin, end, [&](const auto& entry) { return entry.second == object; }));
}

} // namespace zef

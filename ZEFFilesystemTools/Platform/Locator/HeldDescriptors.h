// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Locator/DescriptorShelf.h"

#include <array>
#include <cstddef>
#include <span>
#include <unordered_map>
#include <vector>

namespace zef {

/// The table of the descriptors that the locator holds, within a budget.
///
/// Half of the budget is for folders, of which the least recently used one makes room, and half for
/// other objects, first come, first served: the files of one large folder must not drive out all
/// else. Not synchronised. Closes nothing itself: what leaves the table is handed out, so that the
/// caller can close it (which may be slow) after giving up its lock.
class HeldDescriptors {
public:
    using Descriptors = std::vector<Ref<ObjectDescriptor>>;

    std::size_t count() const { return _folders.count() + _others.count(); }
    std::size_t budget() const { return _budget; }
    /// Returns what is over the new budget.
    Descriptors setBudget(std::size_t);

    /// Whether an object of this kind would be taken.
    bool hasRoom(bool isFolder) const;

    /// The held object that `ref` refers to, borrowed until the next change; null if it isn't
    /// held. Counts as a use of it.
    HeldObject* find(const FSRef& ref);

    /// Takes `object` in, or adds its uses to those of the same object when that is held already.
    /// Returns the one of the two descriptors that isn't needed, or that of another object that had
    /// to make room, or `object`'s own if there is no room.
    Ref<ObjectDescriptor> insert(HeldObject object);

    /// Takes the object out, however often it is used; null if it isn't held.
    Ref<ObjectDescriptor> remove(const FSRef& ref);
    /// Takes the object out only if it is held by this very descriptor.
    Ref<ObjectDescriptor> remove(const HeldObject& object);

    /// Takes out the object that is easiest to do without: a folder, which can be opened again when
    /// it is looked for, rather than a file. Null if none is held.
    Ref<ObjectDescriptor> removeLeastWanted();

    /// Copies objects in turn, each at most once; returns how many.
    std::size_t copyInTurn(std::span<HeldObject>);
    std::vector<HeldObject> copyAll();

private:
    using Iterator = DescriptorShelf::Iterator;
    using Index = std::unordered_multimap<ObjectNumbers, Iterator, ObjectNumbers::Hash>;

    DescriptorShelf& shelf(bool isFolder) { return isFolder ? _folders : _others; }
    Index::iterator findEntry(const FSRef&);
    Ref<ObjectDescriptor> removeEntry(Index::iterator);
    Ref<ObjectDescriptor> removeFromShelf(Iterator);

    std::size_t _budget = 0;
    DescriptorShelf _folders;
    DescriptorShelf _others;
    Index _index;
};

} // namespace zef

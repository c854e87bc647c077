// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <list>

namespace zef {

/// An object that is held by a descriptor, and by how many.
struct HeldObject {
    FSRef ref;
    Ref<ObjectDescriptor> descriptor;
    /// The mount that it was opened through; 0 if it isn't known.
    std::uint64_t mountID = 0;
    std::uint32_t uses = 1;
};

/// Held objects of one kind, the most recently used one first. Not synchronised.
class DescriptorShelf {
public:
    using Iterator = std::list<HeldObject>::iterator;

    std::size_t count() const { return _objects.size(); }

    void setLimit(std::size_t limit) { _limit = limit; }
    std::size_t limit() const { return _limit; }
    bool isFull() const { return count() >= _limit; }
    bool isOverfull() const { return count() > _limit; }

    Iterator begin() { return _objects.begin(); }
    Iterator end() { return _objects.end(); }
    /// The least recently used one, or `end`.
    Iterator last() { return _objects.empty() ? end() : std::prev(end()); }

    Iterator add(HeldObject);
    void markUsed(Iterator);
    HeldObject take(Iterator);

    /// Each call gives another object until all have had their turn; `end` if there is none.
    Iterator nextInTurn();

private:
    std::list<HeldObject> _objects;
    std::size_t _limit = 0;
    Iterator _turn = _objects.end();
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Ref.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zef {

/// A set of objects, told apart by identity and retained, that remembers the order in which they
/// were inserted. One thread at a time.
///
/// It may be changed while it is walked by index: an element keeps its index until `compact`.
template <typename T> class ZEF_EXPORT OrderedSet {
public:
    explicit OrderedSet(std::size_t capacity) { rebuildSlots(capacity); }

    std::size_t count() const { return _count; }
    /// False for null.
    bool contains(const T* object) const { return indexOf(object) != endIndex(); }

    /// Returns false if it was there already.
    bool insert(T* object)
    {
        auto slot = slotOf(object);
        if (_slots[slot] != emptySlot)
            return false;
        if ((_entries.size() + 1) * 4 > _slots.size() * 3) {
            rebuildSlots(_entries.size() + 1);
            slot = slotOf(object);
        }
        _slots[slot] = static_cast<std::uint32_t>(_entries.size());
        _entries.push_back(object);
        ++_count;
        return true;
    }

    /// Takes the object out; returns false if it was not there.
    bool remove(const T* object)
    {
        const auto index = indexOf(object);
        if (index == endIndex())
            return false;
        // The slot stays taken, by an entry of nobody, so that probes go on behind it.
        Ref<T> removed = std::move(_entries[index]);
        --_count;
        return true;
    }

    /// One more than the greatest index in use; entries below it may be null.
    std::size_t endIndex() const { return _entries.size(); }

    /// The index of `object`; `endIndex` if it is not in the set.
    std::size_t indexOf(const T* object) const
    {
        const auto index = object ? _slots[slotOf(object)] : emptySlot;
        return index == emptySlot ? endIndex() : index;
    }

    /// The element at `index`, or null where it was removed.
    T* objectAtIndex(std::size_t index) const { return _entries[index].get(); }

    /// Closes the gaps that removals left, if they are many; returns true if indexes changed. Not
    /// during a walk.
    bool compact()
    {
        if (_count >= _entries.size() / 2)
            return false;
        std::erase_if(_entries, [](const Ref<T>& entry) { return !entry; });
        rebuildSlots(_count);
        return true;
    }

private:
    static constexpr std::uint32_t emptySlot = UINT32_MAX;

    std::size_t slotOf(const T* object) const
    {
        const auto mask = _slots.size() - 1;
        auto hash = reinterpret_cast<std::uintptr_t>(object) * 0x9e3779b97f4a7c15u;
        auto slot = (hash >> 32) & mask;
        while (_slots[slot] != emptySlot && _entries[_slots[slot]].get() != object)
            slot = (slot + 1) & mask;
        return slot;
    }

    void rebuildSlots(std::size_t capacity)
    {
        _slots.assign(std::bit_ceil(capacity + capacity / 3 + 4), emptySlot);
        for (std::size_t index = 0; index < _entries.size(); ++index) {
            if (_entries[index])
                _slots[slotOf(_entries[index].get())] = static_cast<std::uint32_t>(index);
        }
    }

    std::vector<Ref<T>> _entries;
    std::vector<std::uint32_t> _slots;
    std::size_t _count = 0;
};

} // namespace zef

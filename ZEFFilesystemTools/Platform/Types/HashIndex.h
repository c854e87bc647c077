// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zef {

/// Numbers found by the hash of what they stand for: eight bytes a slot, and no look at the thing
/// itself until the whole hash agrees. The caller compares. One thread at a time until complete.
class HashIndex {
public:
    void insert(std::uint32_t hash, std::uint32_t value)
    {
        if (_slots.size() < 2 * (_count + 1))
            grow();
        place(hash, value);
        ++_count;
    }

    /// Calls `visit(value)` for each number inserted with `hash` until one call returns true;
    /// whether one did.
    template <typename Visitor> bool find(std::uint32_t hash, const Visitor& visit) const
    {
        if (_slots.empty())
            return false;
        for (auto at = first(hash); _slots[at].value != none; at = next(at)) {
            if (_slots[at].hash == hash && visit(_slots[at].value))
                return true;
        }
        return false;
    }

private:
    static constexpr std::uint32_t none = UINT32_MAX;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t value = none;
    };

    std::size_t first(std::uint32_t hash) const
    {
        return (hash ^ (hash >> 15U)) & (_slots.size() - 1);
    }
    std::size_t next(std::size_t slot) const { return (slot + 1) & (_slots.size() - 1); }

    void place(std::uint32_t hash, std::uint32_t value)
    {
        auto at = first(hash);
        while (_slots[at].value != none)
            at = next(at);
        _slots[at] = { hash, value };
    }

    void grow()
    {
        const auto old = std::move(_slots);
        _slots.assign(old.empty() ? 16 : 2 * old.size(), {});
        for (const auto& slot : old) {
            if (slot.value != none)
                place(slot.hash, slot.value);
        }
    }

    std::vector<Slot> _slots;
    std::size_t _count = 0;
};

} // namespace zef

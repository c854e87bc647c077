// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/MutationError.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

namespace zef {

/// A mutable array of plain values (strings, URLs); itself counted, so that several parties can
/// hold the same array. One thread at a time; whoever shares it guards it.
template <typename Value> class ZEF_EXPORT ValueArray final : public ZEFObject {
public:
    ValueArray() = default;

    explicit ValueArray(std::size_t capacity) { _values.reserve(capacity); }

    std::size_t count() const { return _values.size(); }
    bool isEmpty() const { return _values.empty(); }

    /// The value at `index`, borrowed until the next change. `index` must be less than `count`.
    const Value& valueAtIndex(std::size_t index) const
    {
        assert(index < _values.size());
        return _values[index];
    }

    void addValue(Value value)
    {
        ++_mutations;
        _values.push_back(std::move(value));
    }

    void removeAllValues()
    {
        ++_mutations;
        _values.clear();
    }

    /// Calls `visit` with a copy of each value in order. Throws `MutationError` at the first step
    /// after the array was changed during the walk.
    template <typename Visit> void enumerate(Visit&& visit) const
    {
        const auto mutations = _mutations;
        for (std::size_t index = 0; index < _values.size(); ++index) {
            const Value value = _values[index];
            visit(value);
            if (mutations != _mutations)
                throw MutationError();
        }
    }

    auto begin() const { return _values.begin(); }
    auto end() const { return _values.end(); }

private:
    std::vector<Value> _values;
    std::size_t _mutations = 0;
};

} // namespace zef

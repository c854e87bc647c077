// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/MutationError.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

namespace zef {

/// A mutable array that owns its elements; itself counted, so that several parties can hold the
/// same array. One thread at a time; whoever shares it guards it.
template <typename T> class ZEF_EXPORT Array final : public ZEFObject {
public:
    Array() = default;

    explicit Array(std::size_t capacity) { _elements.reserve(capacity); }

    std::size_t count() const { return _elements.size(); }
    bool isEmpty() const { return _elements.empty(); }

    /// The element at `index`, borrowed. `index` must be less than `count`.
    T* objectAtIndex(std::size_t index) const
    {
        assert(index < _elements.size());
        return _elements[index].get();
    }

    void addObject(Ref<T> object)
    {
        ++_mutations;
        _elements.push_back(std::move(object));
    }

    /// The position of this very object; `count` when it is not there.
    std::size_t indexOfIdentical(const T* object) const
    {
        auto found = std::find(_elements.begin(), _elements.end(), object);
        return static_cast<std::size_t>(found - _elements.begin());
    }

    bool containsIdentical(const T* object) const { return indexOfIdentical(object) < count(); }

    void removeObjectAtIndex(std::size_t index)
    {
        assert(index < _elements.size());
        ++_mutations;
        // Kept alive until the array is whole again: the last release may call back.
        auto removed = std::move(_elements[index]);
        _elements.erase(_elements.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void removeAllObjects() { takeAllObjects(); }

    /// Empties the array and hands its elements to the caller.
    std::vector<Ref<T>> takeAllObjects()
    {
        ++_mutations;
        return std::exchange(_elements, {});
    }

    /// Calls `visit` with each element in order. Throws `MutationError` at the first step after the
    /// array was changed during the walk.
    template <typename Visit> void enumerate(Visit&& visit) const
    {
        const auto mutations = _mutations;
        for (std::size_t index = 0; index < _elements.size(); ++index) {
            Ref<T> element = _elements[index];
            visit(element.get());
            if (mutations != _mutations)
                throw MutationError();
        }
    }

    auto begin() const { return _elements.begin(); }
    auto end() const { return _elements.end(); }

private:
    std::vector<Ref<T>> _elements;
    std::size_t _mutations = 0;
};

} // namespace zef

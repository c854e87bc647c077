// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/MutationError.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

namespace zef {

/// A mutable array of objects, which it owns, or of plain values such as strings and URLs.
///
/// It is counted itself, so that several parties can hold the same array. One thread at a time;
/// whoever shares it guards it.
template <typename T> class ZEF_EXPORT Array final : public ZEFObject {
    static constexpr bool holdsObjects = std::is_base_of_v<ZEFObject, T>;

public:
    using Element = std::conditional_t<holdsObjects, Ref<T>, T>;
    /// An element that the array goes on owning; a value is borrowed until the next change.
    using Borrowed = std::conditional_t<holdsObjects, T*, const T&>;

    Array() = default;

    explicit Array(std::size_t capacity) { _elements.reserve(capacity); }

    std::size_t count() const { return _elements.size(); }
    bool isEmpty() const { return _elements.empty(); }

    /// `index` must be less than `count`.
    Borrowed objectAtIndex(std::size_t index) const
    {
        assert(index < _elements.size());
        return borrowed(_elements[index]);
    }

    void addObject(Element object)
    {
        ++_mutations;
        _elements.push_back(std::move(object));
    }

    /// The position of this very object; `count` if it is not there.
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
    std::vector<Element> takeAllObjects()
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
            const Element element = _elements[index];
            visit(borrowed(element));
            if (mutations != _mutations)
                throw MutationError();
        }
    }

    auto begin() const { return _elements.begin(); }
    auto end() const { return _elements.end(); }

private:
    static Borrowed borrowed(const Element& element)
    {
        if constexpr (holdsObjects)
            return element.get();
        else
            return element;
    }

    std::vector<Element> _elements;
    std::size_t _mutations = 0;
};

} // namespace zef

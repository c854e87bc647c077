// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <cstddef>
#include <type_traits>
#include <utility>

namespace zef {

/// Owns one reference to a counted object, or none.
///
/// A raw pointer borrows; a `Ref` owns. Copying retains, moving hands the reference over. Any
/// thread may copy a `Ref` of its own; one `Ref` object belongs to one thread at a time.
template <typename T> class ZEF_EXPORT Ref {
public:
    constexpr Ref() noexcept = default;
    constexpr Ref(std::nullptr_t) noexcept { }

    /// Retains `object`, which may be null.
    Ref(T* object) noexcept
        : _object(object)
    {
        retainIfSet();
    }

    Ref(const Ref& other) noexcept
        : Ref(other._object)
    {
    }

    Ref(Ref&& other) noexcept
        : _object(std::exchange(other._object, nullptr))
    {
    }

    template <typename U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other)
    noexcept
        : Ref(static_cast<T*>(other.get()))
    {
    }

    template <typename U>
    requires std::is_convertible_v<U*, T*> Ref(Ref<U>&& other)
    noexcept
        : _object(other.leak())
    {
    }

    ~Ref()
    {
        if (_object)
            _object->release();
    }

    Ref& operator=(Ref other) noexcept
    {
        std::swap(_object, other._object);
        return *this;
    }

    /// Takes over a reference that the caller owns.
    static Ref adopt(T* object) noexcept
    {
        Ref result;
        result._object = object;
        return result;
    }

    /// Gives the owned reference to the caller and leaves this `Ref` empty.
    [[nodiscard]] T* leak() noexcept { return std::exchange(_object, nullptr); }

    T* get() const noexcept { return _object; }
    T* operator->() const noexcept { return _object; }
    T& operator*() const& noexcept { return *_object; }
    /// Not of a temporary: `for (auto& file : *subscription->files())` would walk a freed array.
    T& operator*() const&& = delete;
    explicit operator bool() const noexcept { return _object; }

    friend bool operator==(const Ref& left, const Ref& right) noexcept
    {
        return left._object == right._object;
    }

    friend bool operator==(const Ref& left, const T* right) noexcept
    {
        return left._object == right;
    }

private:
    void retainIfSet() const noexcept
    {
        if (_object)
            _object->retain();
    }

    T* _object = nullptr;
};

/// Makes an object and owns its first reference.
template <typename T, typename... Arguments> Ref<T> makeRef(Arguments&&... arguments)
{
    return Ref<T>::adopt(new T(std::forward<Arguments>(arguments)...));
}

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include <cassert>
#include <optional>
#include <type_traits>
#include <utility>

namespace zef {

/// A value, or the error that says why there is none: a `FileError`, an errno value (int), or
/// another type whose default value means "no error". Plain data.
template <typename T, typename Error = FileError> class [[nodiscard]] Expected {
public:
    Expected(T value)
        : _value(std::move(value))
    {
    }

    /// `error` says what went wrong; it is not the default value.
    Expected(Error error)
        : _error(error)
    {
        assert(!(error == Error{}));
    }

    /// Why there is no value; the default value if there is one.
    Error error() const { return _error; }

    bool hasValue() const { return _value.has_value(); }

    /// Whether there is a value. Ask an `Expected<bool>` by `hasValue`, so that nobody takes its
    /// truth for its presence.
    explicit operator bool() const requires(!std::is_same_v<T, bool>) { return hasValue(); }

    /// The value, which must be there.
    T& operator*() & { return *_value; }
    const T& operator*() const& { return *_value; }
    T&& operator*() && { return *std::move(_value); }
    T* operator->() { return &*_value; }
    const T* operator->() const { return &*_value; }

private:
    std::optional<T> _value;
    Error _error{};
};

} // namespace zef

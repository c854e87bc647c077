// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include <cassert>
#include <optional>
#include <type_traits>
#include <utility>

namespace zef {

/// A value, or the error that says why there is none. Plain data.
template <typename T> class [[nodiscard]] Expected {
public:
    Expected(T value)
        : _value(std::move(value))
    {
    }

    /// `error` says what went wrong: it is not `FileError::none`.
    Expected(FileError error)
        : _error(error)
    {
        assert(error != FileError::none);
    }

    /// Why there is no value; `FileError::none` if there is one.
    FileError error() const { return _error; }

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
    FileError _error = FileError::none;
};

} // namespace zef

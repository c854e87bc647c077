// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace zef {

/// The bytes of a path with a NUL after them, in place: what system calls take. PATH_MAX - 1 bytes
/// at the most (path_resolution(7)).
class ZEF_EXPORT PathBytes {
public:
    PathBytes() { _bytes[0] = '\0'; }

    const char* text() const { return _bytes; }
    std::size_t length() const { return _length; }
    std::string_view view() const { return { _bytes, _length }; }

    void clear()
    {
        _length = 0;
        _bytes[0] = '\0';
    }

    /// Adds `bytes` at the end; false, and no change, if there is no room.
    bool append(std::string_view bytes)
    {
        if (bytes.size() >= sizeof _bytes - _length)
            return false;
        bytes.copy(_bytes + _length, bytes.size());
        _length += bytes.size();
        _bytes[_length] = '\0';
        return true;
    }

private:
    std::size_t _length = 0;
    char _bytes[PATH_MAX];
};

/// Gives a path buffer back with free(3).
struct ZEF_EXPORT PathBufferDeleter {
    void operator()(char* bytes) const { std::free(bytes); }
};

/// A NUL-terminated path in memory of its own, of exactly the size it needs, made with malloc(3);
/// null if there is none. `release()` hands the bytes to a caller that frees them with free(3).
using PathBuffer = std::unique_ptr<char, PathBufferDeleter>;

/// A buffer of its own with these bytes.
inline PathBuffer makePathBuffer(std::string_view bytes)
{
    PathBuffer buffer(static_cast<char*>(std::malloc(bytes.size() + 1)));
    if (!buffer)
        return nullptr;
    bytes.copy(buffer.get(), bytes.size());
    buffer.get()[bytes.size()] = '\0';
    return buffer;
}

} // namespace zef

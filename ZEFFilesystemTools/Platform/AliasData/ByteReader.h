// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zef {

/// Takes little-endian numbers and texts off bytes from anywhere, never beyond their end: returns
/// false for what does not fit. The bytes are borrowed. One thread.
class ByteReader {
public:
    ByteReader(const std::byte* bytes, std::size_t count)
        : _next(bytes)
        , _left(count)
    {
    }

    bool isAtEnd() const { return _left == 0; }

    template <typename Number> [[nodiscard]] bool read(Number& number)
    {
        if (_left < sizeof number)
            return false;
        std::uint64_t value = 0;
        for (std::size_t index = 0; index < sizeof number; ++index)
            value |= std::to_integer<std::uint64_t>(_next[index]) << (8 * index);
        number = static_cast<Number>(value);
        skip(sizeof number);
        return true;
    }

    /// `bytes` is borrowed from what is read.
    [[nodiscard]] bool readBytes(std::size_t count, std::string_view& bytes)
    {
        if (_left < count)
            return false;
        bytes = { reinterpret_cast<const char*>(_next), count };
        skip(count);
        return true;
    }

    /// Reads a length of 16 bits and as many bytes, at most `longest`.
    [[nodiscard]] bool readText(std::size_t longest, std::string& text)
    {
        std::uint16_t length = 0;
        std::string_view bytes;
        if (!read(length) || length > longest || !readBytes(length, bytes))
            return false;
        text = bytes;
        return true;
    }

private:
    void skip(std::size_t count)
    {
        _next += count;
        _left -= count;
    }

    const std::byte* _next;
    std::size_t _left;
};

} // namespace zef

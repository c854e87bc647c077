// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace zef {

/// Writes little-endian numbers and texts one after another, as `ByteReader` reads them. One
/// thread.
class ByteWriter {
public:
    template <typename Number> void write(Number number)
    {
        const auto value = static_cast<std::uint64_t>(number);
        for (std::size_t index = 0; index < sizeof number; ++index)
            _bytes.push_back(static_cast<std::byte>(value >> (8 * index)));
    }

    void writeBytes(const void* bytes, std::size_t count)
    {
        const auto* first = static_cast<const std::byte*>(bytes);
        _bytes.insert(_bytes.end(), first, first + count);
    }

    /// `text` must not be longer than 65535 bytes.
    void writeText(std::string_view text)
    {
        write(static_cast<std::uint16_t>(text.size()));
        writeBytes(text.data(), text.size());
    }

    const std::vector<std::byte>& bytes() const { return _bytes; }
    std::vector<std::byte> takeBytes() { return std::exchange(_bytes, {}); }

private:
    std::vector<std::byte> _bytes;
};

} // namespace zef

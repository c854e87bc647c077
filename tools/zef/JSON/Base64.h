// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Bytes as text (RFC 4648, section 4), in the one way in which each sequence of bytes is written:
/// padded, without line ends.
class Base64 {
public:
    using Bytes = std::vector<std::byte>;

    static std::string encode(const Bytes&);
    /// Nothing for a text that `encode` would not have made.
    static std::optional<Bytes> decode(std::string_view text);
};

} // namespace tool

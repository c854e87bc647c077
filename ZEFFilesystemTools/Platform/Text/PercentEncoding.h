// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zef {

/// Whether a byte is unreserved (RFC 3986): an ASCII letter, a digit, or one of "-._~".
constexpr bool isUnreserved(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
        || (byte >= '0' && byte <= '9') || std::string_view("-._~").find(byte) != std::string::npos;
}

/// Appends `bytes` to `text`: each byte that `stays(byte)` is true for as it is, every other one as
/// '%' and two hexadecimal digits in upper case.
template <typename Predicate>
void appendPercentEncoded(std::string& text, std::string_view bytes, const Predicate& stays)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char byte : bytes) {
        if (stays(byte)) {
            text += byte;
            continue;
        }
        const auto value = static_cast<unsigned char>(byte);
        text += '%';
        text += digits[value / 16];
        text += digits[value % 16];
    }
}

} // namespace zef

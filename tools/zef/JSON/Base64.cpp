// SPDX-License-Identifier: MIT
#include "tools/zef/JSON/Base64.h"

#include <algorithm>
#include <cstdint>

namespace tool {
namespace {

constexpr std::string_view digits
    = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char padding = '=';
constexpr std::size_t bytesOfGroup = 3;
constexpr std::size_t digitsOfGroup = 4;

// The digits without the padding; more than a group can have at its end where that is wrong.
std::string_view withoutPadding(std::string_view text)
{
    const auto last = text.find_last_not_of(padding);
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

} // namespace

std::string Base64::encode(const Bytes& bytes)
{
    std::string text;
    text.reserve((bytes.size() + bytesOfGroup - 1) / bytesOfGroup * digitsOfGroup);
    for (std::size_t begin = 0; begin < bytes.size(); begin += bytesOfGroup) {
        const auto count = std::min(bytesOfGroup, bytes.size() - begin);
        std::uint32_t group = 0;
        for (std::size_t index = 0; index < bytesOfGroup; ++index)
            group = group << 8
                | (index < count ? std::to_integer<unsigned>(bytes[begin + index]) : 0);
        for (std::size_t index = 0; index < digitsOfGroup; ++index)
            text += index <= count ? digits[group >> (18 - 6 * index) & 63] : padding;
    }
    return text;
}

std::optional<Base64::Bytes> Base64::decode(std::string_view text)
{
    Bytes bytes;
    bytes.reserve(text.size() / digitsOfGroup * bytesOfGroup);
    std::uint32_t group = 0;
    unsigned bits = 0;
    for (const char digit : withoutPadding(text)) {
        const auto value = digits.find(digit);
        if (value == std::string_view::npos)
            return std::nullopt;
        group = group << 6 | static_cast<std::uint32_t>(value);
        bits += 6;
        if (bits < 8)
            continue;
        bits -= 8;
        bytes.push_back(static_cast<std::byte>(group >> bits & 255));
    }
    // What is left out, left over or not zero would be written in another way.
    if (encode(bytes) != text)
        return std::nullopt;
    return bytes;
}

} // namespace tool

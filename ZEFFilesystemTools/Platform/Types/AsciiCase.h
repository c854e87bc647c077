// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace zef {

/// The small letter of an ASCII capital; every other byte as it is, in any locale.
constexpr char foldedCase(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
}

/// Whether two texts differ at most in the case of ASCII letters.
constexpr bool equalsFolded(std::string_view one, std::string_view other)
{
    return one.size() == other.size()
        && (one == other || std::equal(one.begin(), one.end(), other.begin(), [](char a, char b) {
               return foldedCase(a) == foldedCase(b);
           }));
}

/// A hash of a whole text that is the same for texts that differ in case alone; eight bytes at
/// once.
inline std::uint32_t foldedHash(std::string_view text)
{
    constexpr std::uint64_t smallLetters = 0x2020'2020'2020'2020U;
    constexpr std::uint64_t factor = 0x9e37'79b9'7f4a'7c15U;
    auto hash = static_cast<std::uint64_t>(text.size()) * factor;
    while (!text.empty()) {
        std::uint64_t word = 0;
        const auto length = std::min(text.size(), sizeof(word));
        std::memcpy(&word, text.data(), length);
        text.remove_prefix(length);
        hash = (hash ^ (word | smallLetters)) * factor;
        hash ^= hash >> 32U;
    }
    return static_cast<std::uint32_t>(hash);
}

/// The hash of an ending that has nothing in it yet, and that of `character` and an ending, case
/// left aside: one pass from the end of a name to its front hashes all its endings (FNV-1a).
inline constexpr std::uint32_t emptyEndingHash = 2'166'136'261U;

constexpr std::uint32_t endingHash(char character, std::uint32_t ending)
{
    return (ending ^ static_cast<unsigned char>(foldedCase(character))) * 16'777'619U;
}

constexpr std::uint32_t endingHash(std::string_view text)
{
    auto hash = emptyEndingHash;
    for (auto index = text.size(); index > 0; --index)
        hash = endingHash(text[index - 1], hash);
    return hash;
}

} // namespace zef

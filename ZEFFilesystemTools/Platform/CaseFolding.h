// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
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
        && std::equal(one.begin(), one.end(), other.begin(),
            [](char a, char b) { return foldedCase(a) == foldedCase(b); });
}

/// The hash of nothing, to be extended by `foldedHashBefore`.
inline constexpr std::uint32_t emptyFoldedHash = 2'166'136'261U;

/// The hash of `character` and then the text that `hash` is the hash of, case left aside. It grows
/// to the left, so that one pass over a name hashes all its endings (FNV-1a).
constexpr std::uint32_t foldedHashBefore(char character, std::uint32_t hash)
{
    return (hash ^ static_cast<unsigned char>(foldedCase(character))) * 16'777'619U;
}

constexpr std::uint32_t foldedHash(std::string_view text)
{
    auto hash = emptyFoldedHash;
    for (auto index = text.size(); index > 0; --index)
        hash = foldedHashBefore(text[index - 1], hash);
    return hash;
}

} // namespace zef

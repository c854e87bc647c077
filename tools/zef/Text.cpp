// SPDX-License-Identifier: MIT
#include "tools/zef/Text.h"

#include <cstdint>

namespace tool {
namespace {

std::uint8_t byteAt(std::string_view text, std::size_t index)
{
    return static_cast<std::uint8_t>(text[index]);
}

// 0 for a byte that begins no character.
std::size_t lengthAfter(std::uint8_t lead)
{
    if (lead < 0x80)
        return 1;
    if (lead < 0xc2 || lead > 0xf4)
        return 0;
    return lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
}

// RFC 3629: no overlong forms, no surrogates, nothing beyond U+10FFFF.
bool mayFollow(std::uint8_t lead, std::size_t index, std::uint8_t byte)
{
    std::uint8_t lowest = 0x80;
    std::uint8_t highest = 0xbf;
    if (index == 1) {
        lowest = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : lowest;
        highest = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : highest;
    }
    return byte >= lowest && byte <= highest;
}

bool isControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7f && character < 0xa0);
}

// Line separators and the characters that turn the direction of writing.
bool misleads(char32_t character)
{
    return character == 0x061c || (character >= 0x200e && character <= 0x200f)
        || (character >= 0x2028 && character <= 0x202e)
        || (character >= 0x2066 && character <= 0x2069);
}

std::string escaped(char32_t character)
{
    switch (character) {
    case U'\n':
        return "\\n";
    case U'\r':
        return "\\r";
    case U'\t':
        return "\\t";
    }
    const bool isShort = character < 0x80;
    std::string result = isShort ? "\\x" : "\\u";
    for (int shift = isShort ? 4 : 12; shift >= 0; shift -= 4)
        result += "0123456789abcdef"[(character >> shift) & 15];
    return result;
}

template <typename Append> std::string mapped(std::string_view text, Append&& append)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto character = firstCharacter(text);
        append(result, character, text.substr(0, character.length));
        text.remove_prefix(character.length);
    }
    return result;
}

} // namespace

Character firstCharacter(std::string_view text)
{
    const auto lead = byteAt(text, 0);
    const auto length = lengthAfter(lead);
    if (!length)
        return { 0xfffd, 1, false };
    if (length == 1)
        return { lead, 1, true };
    auto value = static_cast<char32_t>(lead & (0x7f >> length));
    for (std::size_t index = 1; index < length; ++index) {
        if (index >= text.size() || !mayFollow(lead, index, byteAt(text, index)))
            return { 0xfffd, index, false };
        value = value << 6 | (byteAt(text, index) & 0x3f);
    }
    return { value, length, true };
}

std::string validText(std::string_view text)
{
    return mapped(text, [](std::string& result, Character character, std::string_view bytes) {
        result += character.isValid ? bytes : replacementCharacter;
    });
}

std::string textForTerminal(std::string_view text)
{
    return mapped(text, [](std::string& result, Character character, std::string_view bytes) {
        if (!character.isValid)
            result += replacementCharacter;
        else if (isControl(character.value) || misleads(character.value))
            result += escaped(character.value);
        else
            result += bytes;
    });
}

} // namespace tool

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/DisplayName.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace zef {
namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

struct Character {
    /// 0 where no valid character begins.
    std::size_t length = 0;
    std::uint32_t code = 0;
};

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

// By the first byte alone; 0 for one that begins nothing.
std::size_t lengthAnnouncedBy(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

// A character has one spelling, the shortest; surrogates and codes above U+10FFFF are none.
bool isValid(const Character& character)
{
    if (character.length < 3)
        return true;
    if (character.length == 3)
        return character.code >= 0x800 && (character.code < 0xD800 || character.code > 0xDFFF);
    return character.code >= 0x10000 && character.code <= 0x10FFFF;
}

Character firstCharacter(std::string_view bytes)
{
    const auto first = static_cast<unsigned char>(bytes.front());
    const auto length = lengthAnnouncedBy(first);
    if (length == 1)
        return { 1, first };
    if (length == 0 || bytes.size() < length)
        return {};
    Character character{ length, first & (0x7Fu >> length) };
    for (const char byte : bytes.substr(1, length - 1)) {
        if (!isContinuation(byte))
            return {};
        character.code = character.code << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
    }
    return isValid(character) ? character : Character();
}

bool isControl(std::uint32_t code)
{
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

bool isPlain(std::string_view bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
        [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

} // namespace

std::string displayNameOfBytes(std::string_view bytes)
{
    if (isPlain(bytes))
        return std::string(bytes);
    std::string name;
    name.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto length = firstCharacter(bytes).length;
        name += length ? bytes.substr(0, length) : replacementCharacter;
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return name;
}

bool isDisplayable(std::string_view name)
{
    if (name.find_first_not_of(' ') == std::string_view::npos)
        return false;
    while (!name.empty()) {
        const auto character = firstCharacter(name);
        if (!character.length || isControl(character.code))
            return false;
        name.remove_prefix(character.length);
    }
    return true;
}

} // namespace zef

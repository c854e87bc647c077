// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/RequestText.h"

#include "tools/zef/Text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace tool {
namespace {

constexpr std::size_t unicodeEscapeLength = 6;

// The value of an escape \uXXXX at the start of `text`; 0 when there is none.
std::uint32_t unicodeEscape(std::string_view text)
{
    if (text.size() < unicodeEscapeLength || text[0] != '\\' || text[1] != 'u')
        return 0;
    std::uint32_t value = 0;
    const char* end = text.data() + unicodeEscapeLength;
    return std::from_chars(text.data() + 2, end, value, 16).ptr == end ? value : 0;
}

bool isFirstHalf(std::uint32_t value)
{
    return value >= 0xd800 && value < 0xdc00;
}

bool isSecondHalf(std::uint32_t value)
{
    return value >= 0xdc00 && value < 0xe000;
}

} // namespace

RequestText::RequestText(std::string_view line)
{
    _text.reserve(line.size());
    while (!line.empty()) {
        if (_isInString)
            takeInString(line);
        else
            takeOutside(line);
    }
}

void RequestText::takeOutside(std::string_view& rest)
{
    const char byte = rest.front();
    if (byte == '[' || byte == '{')
        _depth = std::max(_depth, ++_currentDepth);
    else if ((byte == ']' || byte == '}') && _currentDepth)
        --_currentDepth;
    else if (byte == '"')
        _isInString = true;
    take(rest, 1);
}

void RequestText::takeInString(std::string_view& rest)
{
    if (rest.front() == '\\')
        return takeEscape(rest);
    if (rest.front() == '"')
        _isInString = false;
    const auto character = firstCharacter(rest);
    if (character.isValid)
        take(rest, character.length);
    else
        replace(rest, character.length);
}

void RequestText::takeEscape(std::string_view& rest)
{
    const auto value = unicodeEscape(rest);
    const auto next = rest.substr(std::min(rest.size(), unicodeEscapeLength));
    if (isFirstHalf(value) && isSecondHalf(unicodeEscape(next)))
        take(rest, 2 * unicodeEscapeLength);
    else if (isFirstHalf(value) || isSecondHalf(value))
        replace(rest, unicodeEscapeLength);
    else
        take(rest, std::min<std::size_t>(rest.size(), 2));
}

void RequestText::take(std::string_view& rest, std::size_t length)
{
    _text += rest.substr(0, length);
    rest.remove_prefix(length);
}

void RequestText::replace(std::string_view& rest, std::size_t length)
{
    _text += "\xef\xbf\xbd";
    rest.remove_prefix(length);
    _hasInvalidCharacters = true;
}

} // namespace tool

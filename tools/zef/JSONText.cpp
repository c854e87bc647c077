// SPDX-License-Identifier: MIT
#include "tools/zef/JSONText.h"

#include "tools/zef/Text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <stdexcept>

namespace tool {
namespace {

constexpr std::size_t deepestNesting = 128;
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

// Without the parser's own mark, and without the line, which is always the first.
std::string reason(std::string message)
{
    const auto mark = message.find("] ");
    if (mark != std::string::npos)
        message.erase(0, mark + 2);
    constexpr std::string_view place = "parse error at line 1, column ";
    if (message.starts_with(place))
        message.replace(0, place.size(), "no JSON at byte ");
    return message;
}

} // namespace

JSONText::JSONText(std::string_view line)
{
    _text.reserve(line.size());
    while (!line.empty()) {
        if (_isInString)
            takeInString(line);
        else
            takeOutside(line);
    }
}

nlohmann::json JSONText::parsed() const
{
    if (_depth > deepestNesting) {
        throw std::invalid_argument(
            "nested deeper than " + std::to_string(deepestNesting) + " levels");
    }
    try {
        return nlohmann::json::parse(_text);
    } catch (const nlohmann::json::exception& error) {
        throw std::invalid_argument(reason(error.what()));
    }
}

void JSONText::takeOutside(std::string_view& rest)
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

void JSONText::takeInString(std::string_view& rest)
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

void JSONText::takeEscape(std::string_view& rest)
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

void JSONText::take(std::string_view& rest, std::size_t length)
{
    _text += rest.substr(0, length);
    rest.remove_prefix(length);
}

void JSONText::replace(std::string_view& rest, std::size_t length)
{
    _text += "\xef\xbf\xbd";
    rest.remove_prefix(length);
    _hasInvalidCharacters = true;
}

} // namespace tool

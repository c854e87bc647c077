// SPDX-License-Identifier: MIT
#include "tools/zef/JSON/JSON.h"

#include "tools/zef/Text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tool {
namespace {

bool mayStandUnescaped(char byte)
{
    constexpr char firstPrintable = ' ';
    constexpr char lastOfASCII = '\x7f';
    return byte >= firstPrintable && byte <= lastOfASCII && byte != '"' && byte != '\\';
}

// `byte` is a control character, a quote or a backslash.
std::string escaped(char byte)
{
    constexpr std::string_view hasLetter = "\b\f\n\r\t\"\\";
    constexpr std::string_view letters = "bfnrt\"\\";
    const auto found = hasLetter.find(byte);
    if (found != std::string_view::npos)
        return { '\\', letters[found] };
    return { '\\', 'u', '0', '0', byte < '\x10' ? '0' : '1', "0123456789abcdef"[byte & 15] };
}

void appendText(std::string& result, std::string_view text)
{
    result += '"';
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && mayStandUnescaped(text[plain]))
            ++plain;
        result += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty())
            break;
        const auto character = firstCharacter(text);
        if (!character.isValid)
            result += replacementCharacter;
        else if (character.length == 1)
            result += escaped(text.front());
        else
            result += text.substr(0, character.length);
        text.remove_prefix(character.length);
    }
    result += '"';
}

// Puts a value behind those that stand in `list`, which ends with a bracket.
void append(std::string& list, const auto& appendValue)
{
    constexpr std::size_t lengthWhenEmpty = 2;
    const char bracket = list.back();
    if (list.size() == lengthWhenEmpty)
        list.pop_back();
    else
        list.back() = ',';
    appendValue();
    list += bracket;
}

} // namespace

// With a fraction, so that readers in some languages don't take it for a whole number.
JSON::JSON(double value)
{
    if (!std::isfinite(value))
        return;
    constexpr double tooSmall = 1e-4;
    constexpr double tooLarge = 1e15;
    const double size = std::abs(value);
    const bool isFixed = size == 0 || (size >= tooSmall && size < tooLarge);
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), value,
        isFixed ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    _text.assign(digits.begin(), end);
    if (isFixed && _text.find('.') == std::string::npos)
        _text += ".0";
}

JSON::JSON(std::string_view value)
{
    _text.clear();
    _text.reserve(value.size() + 2);
    appendText(_text, value);
}

JSONObject& JSONObject::add(std::string_view name, const JSON& value)
{
    append(_text, [&] {
        appendText(_text, name);
        _text += ':';
        _text += value.text();
    });
    return *this;
}

JSONArray& JSONArray::add(const JSON& value)
{
    append(_text, [&] { _text += value.text(); });
    return *this;
}

} // namespace tool

// SPDX-License-Identifier: MIT
#include "tools/zef/JSON/JSONText.h"

#include "tools/zef/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace tool {
namespace {

// Makes values of what the parser finds.
class Builder final : public nlohmann::json_sax<nlohmann::json> {
public:
    JSONValue takeValue() { return std::move(_root); }
    // Empty when all went well.
    const std::string& failure() const { return _failure; }

    bool null() override { return add(std::monostate()); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(std::int64_t value) override { return add(value); }
    bool number_unsigned(std::uint64_t value) override { return add(value); }
    bool string(std::string& value) override { return add(std::move(value)); }
    bool binary(nlohmann::json::binary_t&) override { return false; } // never in JSON text
    bool start_object(std::size_t) override { return open(JSONValue::Object()); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(JSONValue::List()); }
    bool end_array() override { return close(); }

    bool number_float(double value, const std::string& text) override
    {
        return add(JSONValue::Fraction{ value, text });
    }

    bool key(std::string& name) override
    {
        _open.back()->as<JSONValue::Object>()->emplace_back().first = std::move(name);
        return true;
    }

    bool parse_error(
        std::size_t, const std::string&, const nlohmann::json::exception& error) override
    {
        _failure = error.what();
        return false;
    }

private:
    // Where the next value belongs.
    JSONValue& place()
    {
        if (_open.empty())
            return _root;
        if (auto* list = _open.back()->as<JSONValue::List>())
            return list->emplace_back();
        return _open.back()->as<JSONValue::Object>()->back().second;
    }

    template <typename Value> bool add(Value value)
    {
        place() = JSONValue(std::move(value));
        return true;
    }

    template <typename Value> bool open(Value value)
    {
        auto& opened = place();
        opened = JSONValue(std::move(value));
        _open.push_back(&opened);
        return true;
    }

    bool close()
    {
        _open.pop_back();
        return true;
    }

    JSONValue _root;
    // Nothing is added to what holds an open list or object, so they stay where they are.
    std::vector<JSONValue*> _open;
    std::string _failure;
};

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

JSONValue JSONText::parsed() const
{
    if (_depth > deepestNesting) {
        throw std::invalid_argument(
            "nested deeper than " + std::to_string(deepestNesting) + " levels");
    }
    Builder builder;
    if (!nlohmann::json::sax_parse(_text, &builder))
        throw std::invalid_argument(reason(builder.failure()));
    return builder.takeValue();
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
    _text += replacementCharacter;
    rest.remove_prefix(length);
    _hasInvalidCharacters = true;
}

} // namespace tool

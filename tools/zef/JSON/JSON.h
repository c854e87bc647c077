// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// A value as JSON text, without line ends.
class JSON {
public:
    /// null
    JSON(std::nullptr_t = nullptr) { }
    JSON(bool value)
        : _text(value ? "true" : "false")
    {
    }
    JSON(std::integral auto value)
        : _text(std::to_string(value))
    {
    }
    /// The shortest text that is read as the same number; null for what is not a number.
    JSON(double value);
    /// Bytes that are not valid UTF-8 become U+FFFD.
    JSON(std::string_view value);
    JSON(const std::string& value)
        : JSON(std::string_view(value))
    {
    }
    JSON(const char* value)
        : JSON(std::string_view(value))
    {
    }
    /// A pointer would be taken for a boolean.
    JSON(const void*) = delete;
    template <typename Value>
    JSON(const std::optional<Value>& value)
        : JSON(value ? JSON(*value) : JSON())
    {
    }

    const std::string& text() const { return _text; }
    /// The text with a line end behind it.
    std::string line() const { return _text + '\n'; }

protected:
    std::string _text = "null";
};

/// An object, whose members stand in the order in which they are added.
class JSONObject : public JSON {
public:
    JSONObject() { _text = "{}"; }

    /// Adds a member that is not there yet.
    JSONObject& add(std::string_view name, const JSON& value);
};

/// A list.
class JSONArray : public JSON {
public:
    JSONArray() { _text = "[]"; }

    JSONArray& add(const JSON& value);
};

} // namespace tool

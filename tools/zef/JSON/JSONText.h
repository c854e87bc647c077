// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/JSON/JSONValue.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// A text in JSON from somewhere else, looked through before it is parsed.
///
/// A string in it may hold what is not valid Unicode: bytes that are not UTF-8, or halves of
/// surrogate pairs as escapes, which is how some languages write such bytes. That makes a wrong
/// value and not unreadable JSON, so U+FFFD takes its place and a mark is set.
class JSONText {
public:
    explicit JSONText(std::string_view line);

    const std::string& text() const { return _text; }
    bool hasInvalidCharacters() const { return _hasInvalidCharacters; }
    /// Throws `std::invalid_argument`, which says what is wrong, if it is not JSON, or is nested so
    /// deep that reading it would take the program down.
    JSONValue parsed() const;

private:
    void takeOutside(std::string_view& rest);
    void takeInString(std::string_view& rest);
    void takeEscape(std::string_view& rest);
    void take(std::string_view& rest, std::size_t length);
    void replace(std::string_view& rest, std::size_t length);

    std::string _text;
    std::size_t _currentDepth = 0;
    std::size_t _depth = 0;
    bool _isInString = false;
    bool _hasInvalidCharacters = false;
};

} // namespace tool

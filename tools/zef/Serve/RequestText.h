// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// The text of a request, looked through before it is parsed.
///
/// A string in it may hold what is no valid Unicode: bytes that are no UTF-8, or halves of
/// surrogate pairs as escapes, which is how some languages write such bytes. That makes a wrong
/// parameter and not unreadable JSON, so U+FFFD takes its place and a mark is set.
class RequestText {
public:
    explicit RequestText(std::string_view line);

    const std::string& text() const { return _text; }
    bool hasInvalidCharacters() const { return _hasInvalidCharacters; }
    /// The deepest nesting of arrays and objects.
    std::size_t depth() const { return _depth; }

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

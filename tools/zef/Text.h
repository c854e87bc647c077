// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// What stands for bytes that are not valid UTF-8: U+FFFD.
constexpr std::string_view replacementCharacter = "\xef\xbf\xbd";

/// One character of a text in UTF-8.
struct Character {
    char32_t value;
    /// In bytes; where the text is not valid, the number of bytes that one U+FFFD stands for.
    std::size_t length;
    bool isValid;
};

/// The first character of `text`, which must not be empty.
Character firstCharacter(std::string_view text);

/// `text` with U+FFFD for each byte that is not valid UTF-8.
std::string validText(std::string_view text);

/// The same with control characters, and those that turn the direction of writing, escaped, so that
/// a name can neither drive a terminal nor look like another.
std::string textForTerminal(std::string_view text);

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zef {

/// The language that people read messages in, and how well a translation suits them.
///
/// Immutable; any thread.
class MessageLocale {
public:
    /// The locale that `text` names, as in "de_AT.UTF-8@euro"; the encoding is ignored.
    /// Empty, "C" and "POSIX" name none.
    explicit MessageLocale(std::string_view text);

    /// What the environment names at this moment (LC_ALL, LC_MESSAGES, LANG; locale(7)). Not while
    /// another thread changes the environment.
    static MessageLocale ofEnvironment();

    const std::string& text() const { return _text; }

    /// How far from the best a translation for `tag` is: lang_COUNTRY@MODIFIER is 0, then come
    /// lang_COUNTRY, lang@MODIFIER, lang, as far as the locale has them. `unsuited` for a tag that
    /// is none of these.
    std::size_t distance(std::string_view tag) const;

    /// What is in no language, which beats only what is unsuited.
    static constexpr std::size_t untranslated = 4;
    static constexpr std::size_t unsuited = 5;

private:
    std::string _text;
    std::vector<std::string> _tags;
};

} // namespace zef

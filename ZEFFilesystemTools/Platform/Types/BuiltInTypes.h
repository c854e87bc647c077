// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace zef {

/// One type that the library knows without any database. The lists are divided by blanks.
struct BuiltInType {
    std::string_view identifier;
    /// The types that it is a kind of; they come earlier in the table.
    std::string_view parents;
    /// The extensions of its files, their case left aside except in those that begin with '='.
    std::string_view extensions = {};
    /// What the shared MIME database calls it.
    std::string_view mimeTypes = {};
};

/// The built-in table.
std::span<const BuiltInType> builtInTypes();

/// Takes the first word off a list that is divided by blanks; empty at its end.
std::string_view takeListedWord(std::string_view& list);

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace zef {

/// How a glob is looked for.
enum class GlobKind {
    literal, ///< a whole name
    ending, ///< "*." and an ending without wildcards
    general,
};

GlobKind kindOfGlob(std::string_view glob);

/// Whether the whole of `name` matches `glob`, in which '*', '?' and [a-z] or [!a-z] stand for
/// bytes and nothing else is special; `foldsCase` leaves the case of ASCII letters aside. Takes at
/// most time in proportion to the product of both lengths.
bool matchesGlob(std::string_view name, std::string_view glob, bool foldsCase);

} // namespace zef

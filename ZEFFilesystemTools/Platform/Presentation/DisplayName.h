// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zef {

/// The file name as valid UTF-8 for display: each invalid byte is replaced by U+FFFD. Any thread.
std::string displayNameOfBytes(std::string_view bytes);

/// Whether a name that a file gives itself can be shown: valid UTF-8 without control characters,
/// and something to see in it. Any thread.
bool isDisplayable(std::string_view name);

} // namespace zef

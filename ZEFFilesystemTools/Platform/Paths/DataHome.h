// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace zef {

/// The folder of the user's own data: XDG_DATA_HOME if it is absolute, otherwise .local/share in
/// the home folder. Nothing if the user has no home folder. Any thread.
std::optional<std::string> dataHome();

} // namespace zef

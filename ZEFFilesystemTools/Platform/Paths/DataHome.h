// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace zef {

/// The folder of the user's own data: XDG_DATA_HOME when it is absolute, otherwise .local/share in
/// the home folder. Empty when the system knows of no home. Any thread.
std::string dataHome();

} // namespace zef

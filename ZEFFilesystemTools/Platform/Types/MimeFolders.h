// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace zef {

/// The folders in which this process's environment and user have MIME databases, the most important
/// one first: `mime` in XDG_DATA_HOME or ~/.local/share, then in each of XDG_DATA_DIRS or
/// /usr/local/share and /usr/share. Only absolute ones, none twice, whether they exist or not.
std::vector<std::string> mimeFolders();

} // namespace zef

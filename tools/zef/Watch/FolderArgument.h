// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tool {

/// Why the folder that the user named can't be watched, as the system puts it; empty when it can.
std::string reasonNotToWatch(const std::string& path);

/// The path to watch: the one that the user named, as it is spelled, unless it names the folder
/// through a link or by dots. Those are resolved, because an item stands for a link itself and a
/// folder's parent is told by its path.
std::string pathToWatch(const std::string& path);

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace zef {

/// The absolute `path` without "." and "..", spelled as before as long as that leads to the same
/// object: behind a link, ".." is not the folder that the link is in. A path to nothing comes back
/// as it is. Links stay unless ".." follows them; the last component is not looked at. Any thread.
std::string pathWithoutDots(std::string path);

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// A folder that a load could not list, and why, as the system puts it.
struct LoadFailure {
    std::string path;
    /// Block devices and sockets are taken for folders until then.
    bool isNoFolder;
    std::string reason;

    /// The failure that the library logged with this line; none when it says something else.
    static std::optional<LoadFailure> inLog(std::string_view line);
};

} // namespace tool

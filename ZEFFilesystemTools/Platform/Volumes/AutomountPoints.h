// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/ExpiringCache.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zef {

/// Knows where a look at a path would make the system mount something (autofs), which may take as
/// long as a server does.
///
/// The places are read at most once a second, the mounts below them each time. Any thread; no lock
/// is held while the system is asked.
class AutomountPoints {
public:
    using MountReader = std::function<std::vector<Mount>()>;

    explicit AutomountPoints(MountReader = readMounts);

    /// Whether looking at `path`, absolute and without "." and "..", would mount something. Goes by
    /// the path as it is spelled: where a link on the way leads is not known without looking.
    bool areAbove(std::string_view path);

private:
    std::vector<std::string> folders();

    MountReader _readMounts;
    /// All of them are one value.
    ExpiringCache<std::monostate, std::vector<std::string>> _folders{ { .seconds = 1 } };
};

} // namespace zef

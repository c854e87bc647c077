// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileHandle.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"

#include <cstdint>

namespace zef {

/// Describes the entry `name` of the open folder `folder` (AT_FDCWD: `name` is a path), the link
/// itself where it is one; an empty name means the object that `folder` itself was opened on.
/// Mounts nothing. 0 or an errno value, and then `stat` stays as it was.
[[nodiscard]] int statAt(int folder, const char* name, Stat& stat);
/// The same, and in `mountID` the number of the mount that was gone through, 0 if the system
/// doesn't report it (STATX_MNT_ID, Linux 5.8).
[[nodiscard]] int statAt(int folder, const char* name, Stat& stat, std::uint64_t& mountID);

/// The handle of such an entry; one that is not known where there is none.
FileHandle handleAt(int folder, const char* name);

} // namespace zef

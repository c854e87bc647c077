// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

namespace zef {

/// One object that is to go to the trash.
struct TrashEntry {
    FSRef ref;
    /// Where it was last seen; it is found by its reference when it is no longer there.
    FileURL lastKnown;
};

} // namespace zef

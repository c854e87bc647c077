// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Paths/FolderPath.h"
#include "ZEFFilesystemTools/Platform/Time/ExpiringCache.h"

#include <cstdint>

namespace zef {

/// Finds the inode numbers of the folders that files are in, and remembers the last one for a tenth
/// of a second, because the next file is usually from the same folder. Any thread.
class ParentInodes {
public:
    /// The number of the folder that `url` is in, links followed; 0 if there is none.
    std::uint64_t inodeOfFolderOf(const FileURL& url);

private:
    struct Folder {
        /// Kept so that its address doesn't go to another one.
        Ref<const FolderPath> path;
        std::uint64_t inode;
    };

    ExpiringCache<const FolderPath*, Folder> _folders{ { .seconds = 0.1, .values = 1 } };
};

} // namespace zef

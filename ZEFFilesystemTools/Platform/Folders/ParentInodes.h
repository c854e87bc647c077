// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Paths/FolderPath.h"

#include <cstdint>
#include <mutex>

namespace zef {

/// Tells the inode numbers of the folders that files are in, and remembers the last one for a tenth
/// of a second, because the next file is mostly from the same folder. Any thread.
class ParentInodes {
public:
    /// The number of the folder that `url` is in, links followed; 0 when there is none.
    std::uint64_t inodeOfFolderOf(const FileURL& url);

private:
    std::mutex _mutex;
    Ref<const FolderPath> _folder;
    std::uint64_t _inode = 0;
    double _validUntil = 0;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"

#include <cstddef>
#include <string>

namespace zef {

/// What a file held and, taken from the very same opened file, its description.
struct BoundedFile {
    Stat stat;
    std::string bytes;
};

/// What to do with a path that ends in a symbolic link.
enum class FinalLink { refused, followed };

/// Reads the whole file at `path`. Waits for nobody: neither for the other end of a FIFO nor for a
/// lease. `FileError::io` also for what is not a regular file, for one of more than `limit` bytes,
/// and for a refused link. Any thread.
Expected<BoundedFile> readBoundedFile(const char* path, std::size_t limit, FinalLink);

} // namespace zef

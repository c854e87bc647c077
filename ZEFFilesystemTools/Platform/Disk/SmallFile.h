// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Stat.h"

#include <cstddef>
#include <string>

namespace zef {

/// More than this is not read of a file that only describes something.
inline constexpr std::size_t largestSmallFile = 65536;

/// Whether an object is a regular file that is small enough to be read.
bool isSmallFile(const Stat&);

/// Reads the whole small file at `path`, links not followed, and describes in `stat` what was
/// opened. Waits for nobody: neither for the other end of a FIFO nor for a lease. 0 or an errno
/// value (EINVAL: no regular file; EFBIG: not small); `bytes` is undefined then. Any thread.
int readSmallFile(const char* path, Stat& stat, std::string& bytes);

} // namespace zef

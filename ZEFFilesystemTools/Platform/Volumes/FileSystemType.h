// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace zef {

/// The type of the file system that the open `descriptor` is on, by its magic number (statfs(2));
/// 0 if the system doesn't say. Any thread.
std::uint32_t fileSystemType(int descriptor);

/// Whether such file systems lie on media that people take out.
bool isTypeOfRemovableMedia(std::uint32_t type);

/// Whether an object has the same inode number for as long as it exists, in its folder's listing
/// too; not where the kernel or a server makes the numbers up when it needs one.
bool hasLastingNumbers(std::uint32_t type);

/// Whether an object keeps its birth time for as long as it exists; overlayfs gives a file another
/// one at its first write.
bool keepsBirthTimes(std::uint32_t type);

/// Whether a handle that can't be opened any more (ESTALE) proves that its object is gone;
/// elsewhere it may only have left a cache.
bool hasLastingHandles(std::uint32_t type);

/// Whether other hosts or programs may change the files without the system knowing of it.
bool isTypeOfRemoteFiles(std::uint32_t type);

/// Whether the system makes the files up when they are read.
bool isTypeOfMadeUpFiles(std::uint32_t type);

} // namespace zef

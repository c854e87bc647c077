// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// The floors: system calls by hand, without a thought for what they say. Each returns for how many
/// objects it succeeded.

/// getdents64(2) over the folder at `path` and one statx(2) an entry, relative to the folder.
std::size_t listByHand(const std::string& path);

/// The same for everything below the folder too, on one thread, each folder opened relative to the
/// one above it.
std::size_t walkByHand(const std::string& path);

/// One lstat(2) a path.
std::size_t statByHand(const std::vector<std::string>& paths);

/// One inotify_add_watch(2) a path, with what the library wants to know of folders, on the inotify
/// instance `queue`.
std::size_t watchByHand(int queue, const std::vector<std::string>& paths);

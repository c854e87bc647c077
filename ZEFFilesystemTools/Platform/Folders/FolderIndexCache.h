// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Folders/FolderIndex.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <vector>

namespace zef {

/// Indexes folders and keeps the last indexes for a moment, so that a thousand files that left one
/// large folder don't mean a thousand readings of it. Any thread; no lock is held while a folder is
/// read.
class FolderIndexCache {
public:
    enum class Freshness {
        /// One that was read within the last second will do.
        recent,
        readAgain,
    };

    /// An index of the folder that is at `folder` now, links followed; null when that isn't one or
    /// can't be read. Indexes the first `limit` entries, or more if they are known anyway.
    Ref<const FolderIndex> index(
        const FileURL& folder, std::size_t limit, Freshness = Freshness::recent);

    /// Lets go of the indexes that are too old to be used. Called by `index` as well, so only a
    /// long pause wants it.
    void forgetOld();

private:
    Ref<const FolderIndex> find(const Stat& folder, std::size_t limit);
    void keep(Ref<const FolderIndex>);
    void forgetOldLocked();

    std::mutex _mutex;
    /// The last one read is the last.
    std::vector<Ref<const FolderIndex>> _indexes;
    std::atomic<bool> _isEmpty{ true };
};

} // namespace zef

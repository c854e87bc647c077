// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Folders/FolderIndex.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Time/ExpiringCache.h"

#include <cstddef>

namespace zef {

/// Indexes folders and keeps the last indexes for a moment, so that a thousand files that left one
/// large folder don't mean a thousand readings of it. Any thread; no lock is held while a folder is
/// read.
class FolderIndexCache {
    using Indexes = ExpiringCache<ObjectNumbers, Ref<const FolderIndex>>;

public:
    enum class Freshness {
        /// One that is kept will do if the folder shows no change since.
        recent,
        readAgain,
    };

    /// The cost of an index is the number of its entries, and 4 for the folder itself.
    using Limits = Indexes::Limits;

    explicit FolderIndexCache(const Limits& limits)
        : _indexes(limits)
    {
    }

    /// An index of the folder that is at `folder` now, links followed; null if there is none or it
    /// can't be read. Indexes the first `limit` entries, or more if they are known anyway.
    Ref<const FolderIndex> index(
        const FileURL& folder, std::size_t limit, Freshness = Freshness::recent);

    /// The same for the folder at `path`, which `stat` describes. A link at the path's end is
    /// refused unless a slash follows.
    Ref<const FolderIndex> index(
        const char* path, const Stat& stat, std::size_t limit, Freshness = Freshness::recent);

    /// Lets go of the indexes that are too old to be used. `index` does this too when it reads a
    /// folder; call it yourself only after a long pause.
    void forgetOld();

private:
    Indexes _indexes;
};

} // namespace zef

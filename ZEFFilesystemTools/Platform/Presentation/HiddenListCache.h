// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Presentation/HiddenList.h"
#include "ZEFFilesystemTools/Platform/Presentation/SmallFileCache.h"
#include "ZEFFilesystemTools/Platform/Time/RecentLook.h"

#include <memory>
#include <mutex>

namespace zef {

/// Knows which files their folders hide: those with a name that begins with a dot, and those that
/// the folder's ".hidden" lists, if that is a regular file of at most 64 KiB that may be read.
///
/// The lists of the last few folders are kept; a question costs one look at the disk, which serves
/// for all that are asked of the folder within a moment, and for a name with a dot none. Any
/// thread.
class HiddenListCache {
public:
    /// `clock` is borrowed and should be the one that the files' stamps come from.
    explicit HiddenListCache(Clock& clock = Clock::system())
        : _lists(clock)
    {
    }

    /// Whether the file at `url`, which need not exist, is hidden; the root and null never are.
    bool hides(const FileURL& url);

private:
    /// What was last found to be in a folder.
    struct LastList {
        RecentLook look;
        /// A file of the folder, which keeps the folder's path.
        FileURL url;
        std::shared_ptr<const HiddenList> list;
    };

    std::shared_ptr<const HiddenList> listFor(const FileURL& url);
    std::shared_ptr<const HiddenList> readListFor(const FileURL& url);

    SmallFileCache<HiddenList, 8> _lists;
    std::mutex _mutex;
    LastList _lastList;
};

} // namespace zef

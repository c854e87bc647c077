// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <functional>
#include <vector>

namespace zef {

/// Spells the place where an object was found as its user does, who may have gone through symbolic
/// links: the system gives paths without any.
///
/// The deepest folder above the object that is known by another spelling counts, or one that is the
/// same as a folder above the place where the object was last seen; what follows is appended. One
/// thread.
class PathSpelling {
public:
    /// The URL of the folder that `stat` describes as it is known now, or null.
    using FolderLookUp = std::function<FileURL(const Stat& stat)>;

    /// `lastKnown` may be null.
    PathSpelling(const FileURL& lastKnown, FolderLookUp);

    /// The user's spelling of `found`; `found` itself where there is no other.
    FileURL spell(const FileURL& found);

private:
    struct Folder {
        FileURL url;
        ObjectNumbers numbers;
    };

    FileURL spellFolder(const FileURL& folder);
    void lookAtFolders();

    FileURL _lastKnown;
    /// Those above the place where the object was last seen, the deepest first.
    std::vector<Folder> _folders;
    FolderLookUp _lookUp;
};

} // namespace zef

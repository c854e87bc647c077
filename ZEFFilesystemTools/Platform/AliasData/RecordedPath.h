// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/SearchedVolume.h"

#include <string>

namespace zef {

/// Walks the way that an alias record knows, where names and numbers may have changed since. One
/// thread.
class RecordedPath {
public:
    /// The volume is borrowed.
    explicit RecordedPath(const SearchedVolume& volume)
        : _volume(volume)
        , _folder(volume.mountPoint())
    {
    }

    /// YES when the object was found at the end of the way. Each folder is taken by its number,
    /// under whatever name, and otherwise by its name alone.
    bool follow();

    /// The deepest folder that was come to.
    const std::string& folder() const { return _folder; }

private:
    bool enter(const AliasRecord::Component& component);
    bool enterRenamed(std::uint64_t inode);
    Ref<const FolderIndex> index() const;

    const SearchedVolume& _volume;
    std::string _folder;
};

} // namespace zef

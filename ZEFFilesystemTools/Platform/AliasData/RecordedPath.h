// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/SearchedVolume.h"

#include <string>

namespace zef {

/// Follows the path in an alias record folder by folder, even if folders on it were renamed. One
/// thread.
class RecordedPath {
public:
    /// The volume is borrowed.
    explicit RecordedPath(const SearchedVolume& volume)
        : _volume(volume)
        , _folder(volume.mountPoint())
    {
    }

    /// Whether the object was found at the end of the path. Each folder is taken by its number,
    /// under whatever name, and otherwise by its name alone.
    bool follow();

    /// The deepest folder that was reached.
    const std::string& folder() const { return _folder; }

private:
    bool enter(const AliasRecord::Component& component);
    bool enterRenamed(std::uint64_t inode);
    Ref<const FolderIndex> index() const;

    const SearchedVolume& _volume;
    std::string _folder;
};

} // namespace zef

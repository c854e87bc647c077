// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasVolume.h"

#include <string>

namespace zef {

/// Walks the way that an alias record knows, where names and numbers may have changed since. One
/// thread.
class AliasChain {
public:
    /// The volume is borrowed.
    explicit AliasChain(const AliasVolume& volume)
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

    const AliasVolume& _volume;
    std::string _folder;
};

} // namespace zef

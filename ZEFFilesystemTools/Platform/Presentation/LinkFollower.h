// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntryCache.h"
#include "ZEFFilesystemTools/Platform/Volumes/AutomountPoints.h"

#include <cstdint>
#include <string>

namespace zef {

/// Follows links, and alias files if wanted, from one place to the next until there is nothing
/// more to follow. It only looks: nothing is started or mounted. One thread.
class LinkFollower {
public:
    enum class Follows { links, linksAndAliasFiles };

    /// `entries` and `automountPoints` are borrowed.
    LinkFollower(DesktopEntryCache& entries, AutomountPoints& automountPoints, Follows follows)
        : _entries(entries)
        , _automountPoints(automountPoints)
        , _follows(follows)
    {
    }

    /// Moves `place`, at which something was found, to the end of the way. A number of
    /// `FileError`: -43 when something on the way is missing or not mounted, -36 when the way
    /// has more than 16 steps; `place` is undefined then.
    FileError follow(ObjectPlace& place);

    /// Whether the last way had any step.
    bool hasFollowed() const { return _steps; }

private:
    FileError nextPlace(const ObjectPlace& place, FileURL& next) const;
    FileError targetOfLink(const ObjectPlace& link, FileURL& target) const;
    FileError targetOfAliasFile(const ObjectPlace& file, FileURL& target) const;
    FileError enter(std::string path, FileURL& target) const;

    DesktopEntryCache& _entries;
    AutomountPoints& _automountPoints;
    Follows _follows;
    unsigned _steps = 0;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntryCache.h"
#include "ZEFFilesystemTools/Platform/Volumes/AutomountPoints.h"

#include <string>

namespace zef {

/// Follows links, and alias files if asked to, from one place to the next until there is nothing
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

    /// Moves `place`, at which something was found, to the end of the way.
    /// `FileError::notFound` if something on the way is missing or not mounted, `FileError::io` if
    /// the way has more than 16 steps; `place` is undefined then.
    FileError follow(ObjectPlace& place);

    /// Whether the last way had any step.
    bool hasFollowed() const { return _steps; }

private:
    Expected<FileURL> nextPlace(const ObjectPlace& place) const;
    Expected<FileURL> targetOfLink(const ObjectPlace& link) const;
    Expected<FileURL> targetOfAliasFile(const ObjectPlace& file) const;
    Expected<FileURL> enter(std::string path) const;

    DesktopEntryCache& _entries;
    AutomountPoints& _automountPoints;
    Follows _follows;
    unsigned _steps = 0;
};

} // namespace zef

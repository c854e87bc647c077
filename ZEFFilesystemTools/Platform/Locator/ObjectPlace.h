// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

namespace zef {

/// Where an object is, and what it is there. One thread.
class ObjectPlace {
public:
    /// Finds the object that `ref` refers to, at `lastKnown` (may be null) or wherever it was
    /// moved, with one look at the disk if it was not moved. `notFound` if it is gone.
    FileError find(const FSRef& ref, const FileURL& lastKnown);

    /// The same without a look if this thread found the object at `lastKnown` less than 50 µs ago
    /// (see `RecentLook`). For answers that may be that old.
    FileError findOrRecall(const FSRef& ref, const FileURL& lastKnown);

    /// Returns true if `findOrRecall` would need no look.
    static bool isJustFound(const FSRef& ref, const FileURL& lastKnown);

    /// For a listing, which has just looked at the object: this thread's next question about it,
    /// perhaps from a host's filter, needs no look of its own.
    static void noteFound(const FSRef& ref, const FileURL& url, const Stat& stat);

    /// Looks at what is at `url`, the link itself where it is one. `notFound` if there is nothing.
    FileError lookAt(const FileURL& url);

    /// As it was spelled. All three are meaningful only after a success.
    const FileURL& url() const { return _url; }
    const char* path() const { return _path.text(); }
    const Stat& stat() const { return _stat; }

private:
    FileError lookFor(const FSRef& ref, const FileURL& url);

    FileURL _url;
    PathBytes _path;
    Stat _stat;
};

} // namespace zef

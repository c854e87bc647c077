// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

#include <cstdint>

namespace zef {

/// Where an object is, and what it is there. One thread.
class ObjectPlace {
public:
    /// Finds the object that `ref` refers to, at `lastKnown` (may be nil) or wherever it was moved,
    /// with one look at the disk where it was not moved, and none where this thread found it a
    /// moment ago. A number of `FileError`: -43 when it is gone.
    FileError find(const FSRef& ref, const FileURL& lastKnown);

    /// For a listing that has just looked at the object: this thread's next question about it needs
    /// no look of its own.
    static void noteFound(const FSRef& ref, const FileURL& url, const Stat& stat);

    /// Whether `find` would need no look to find the object at `lastKnown`.
    static bool isJustFound(const FSRef& ref, const FileURL& lastKnown);

    /// Looks at what is at `url`, the link itself where it is one. A number of `FileError`: -43
    /// when there is nothing.
    FileError lookAt(const FileURL& url);

    /// As it was spelled; all three mean something only after a success.
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

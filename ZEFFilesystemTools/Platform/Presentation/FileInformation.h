// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <string>

namespace zef {

/// What people are shown of a file: its type, its name, whether it is hidden, and where an alias
/// leads.
///
/// It starts nothing, mounts nothing, waits for nobody, and reads only small regular files. Any
/// thread.
class FileInformation : public SharedService<FileInformation> {
public:
    /// One object on disk, the link itself where it is one.
    struct Object {
        const FSRef& ref;
        /// Where it was last seen; may be null.
        const FileURL& url;
        bool isSymlink = false;
    };

    /// What an alias or a URL leads to.
    struct Target {
        FSRef ref;
        FileURL url;
        bool isFolder = false;
        /// Whether there was anything to follow.
        bool wasAliased = false;
    };

    virtual ~FileInformation() = default;

    static FileInformation& system();

    /// The object's type identifier. Answers by the name without a look at the disk where that
    /// suffices, also for an object that is gone.
    virtual Expected<std::string> copyContentType(const Object&) = 0;

    /// False if the name alone rules out an alias file, as most names do; then the type need not be
    /// computed. Does not touch the disk.
    virtual bool mayBeAliasFile(const Object&) { return true; }

    /// Whether the object is hidden from people: by a dot at the beginning of its name or by its
    /// folder's ".hidden" list. `FileError::notFound` if it is gone.
    virtual Expected<bool> copyInvisibility(const Object&) = 0;
    virtual Expected<bool> copyInvisibilityAtURL(const FileURL& url) = 0;

    /// The name to show, valid UTF-8; empty if there is none. Ordinary names come from the URL
    /// without a look at the disk, whether the object still has that name or not; a desktop entry
    /// names itself, and then the name need not be true: the file's name is.
    virtual std::string copyDisplayName(const Object&) = 0;
    /// The same for a path, which nothing need be at.
    virtual std::string copyDisplayNameAtPath(const std::string& path) = 0;

    /// Follows alias files and links, one after the other, from the object that `ref` refers to
    /// and that was last seen at `url`. An object that is neither is its own target. At most 16
    /// steps.
    virtual Expected<Target> resolveAliasFile(const FSRef& ref, const FileURL& url) = 0;

    /// The object that `url` leads to, links followed.
    virtual Expected<Target> copyTargetOfURL(const FileURL& url) = 0;
};

} // namespace zef

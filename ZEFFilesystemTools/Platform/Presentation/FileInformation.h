// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstdint>
#include <string>

namespace zef {

/// What people are shown of a file: its type, its name, whether it is hidden, and where an alias
/// leads.
///
/// It starts nothing, mounts nothing, waits for nobody, and reads small regular files alone. Errors
/// are the numbers of `FileError`. Any thread.
class FileInformation : public SharedService<FileInformation> {
public:
    /// One object on disk, the link itself where it is one.
    struct Object {
        const FSRef& ref;
        /// Where it was last seen; may be nil.
        const FileURL& url;
        bool isSymlink = false;
    };

    virtual ~FileInformation() = default;

    static FileInformation& system();

    /// Sets `type` to the object's type identifier. Answers by the name without a look at the disk
    /// where that suffices, also for an object that is gone.
    virtual FileError copyContentType(const Object&, std::string& type) = 0;

    /// NO when the name alone, which is not looked for on disk, tells that the object is no alias
    /// file, as of most files it does: then nothing needs to be made of its type.
    virtual bool mayBeAliasFile(const Object&) { return true; }

    /// Whether the object is hidden from people: by a dot at the beginning of its name or by its
    /// folder's ".hidden" list. -43 when it is gone.
    virtual FileError copyInvisibility(const Object&, bool& isInvisible) = 0;
    virtual FileError copyInvisibilityAtURL(const FileURL& url, bool& isInvisible) = 0;

    /// The name to show, valid UTF-8; empty when there is none. Ordinary names come from the URL
    /// without a look at the disk, whether the object still has that name or not; a desktop entry
    /// names itself, and then the name need not be true: the file's name is.
    virtual std::string copyDisplayName(const Object&) = 0;
    /// The same for a path, which nothing need be at.
    virtual std::string copyDisplayNameAtPath(const std::string& path) = 0;

    /// Follows alias files and links, one after the other, from the object that `ref` refers to
    /// and that was last seen at `url`: both then are the target's. An object that is neither is
    /// its own target. At most 16 steps; where it fails, all stay as they were.
    virtual FileError resolveAliasFile(
        FSRef& ref, FileURL& url, bool& targetIsFolder, bool& wasAliased)
        = 0;

    /// Sets `ref` to the object that `url` leads to, links followed, and `target` to where that is.
    virtual FileError copyTargetOfURL(const FileURL& url, FSRef& ref, FileURL& target) = 0;
};

} // namespace zef

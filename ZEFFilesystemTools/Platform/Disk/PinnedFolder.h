// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <optional>
#include <string>

namespace zef {

/// Holds a folder open for short work on many of its entries: `FileSystem::statEntry` looks at them
/// without the way to the folder, and goes on finding them if the folder is renamed meanwhile.
///
/// Serves only the looks that it is passed to. One thread.
class PinnedFolder {
public:
    /// Opens the folder that `ref` refers to, at `url`. If it is not there, no path has an entry.
    PinnedFolder(const FSRef& ref, const FileURL& url);
    ~PinnedFolder();
    PinnedFolder(const PinnedFolder&) = delete;
    PinnedFolder& operator=(const PinnedFolder&) = delete;

    /// An open folder and a name in it, both borrowed.
    struct Entry {
        int folder;
        const char* name;
    };

    /// The entry at `path`; nothing if that does not lead straight into the folder.
    std::optional<Entry> entry(const char* path) const;

private:
    bool open(const FSRef& ref, const char* path);

    /// With a slash at the end.
    std::string _path;
    int _folder = -1;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <string>
#include <string_view>

namespace zef {

/// While it lives, its thread's looks at the entries of one folder, by their paths, spare the way
/// to the folder, as if all were taken in the moment when this was made. For short work on many
/// files. Views nest; the innermost serves.
class PinnedFolder {
public:
    /// A view of the folder that `ref` refers to, at `url`; of nothing when that is not there.
    PinnedFolder(const FSRef& ref, const FileURL& url);
    ~PinnedFolder();
    PinnedFolder(const PinnedFolder&) = delete;
    PinnedFolder& operator=(const PinnedFolder&) = delete;

    /// For calls to others, who may change the folder: while it lives no view serves.
    class Pause {
    public:
        Pause();
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        PinnedFolder* _paused;
    };

    /// For the shared file system: sets `folder` and `name` to the view's descriptor and the entry
    /// that `path` is in it; NO when no view of this thread has it.
    static bool find(const char* path, int& folder, const char*& name);

private:
    bool open(const FSRef& ref, const char* path);

    /// With a slash at the end.
    std::string _path;
    int _folder = -1;
    PinnedFolder* _outer = nullptr;
};

} // namespace zef

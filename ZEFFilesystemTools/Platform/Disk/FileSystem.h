// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileHandle.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"

namespace zef {

class PinnedFolder;

/// The questions about one path that the library asks the system. Any thread; keeps nothing open.
class FileSystem : public SharedService<FileSystem> {
public:
    virtual ~FileSystem() = default;

    static FileSystem& system();

    /// Describes the object at `path`, the link itself where it is one; never mounts anything.
    /// Returns 0 or an errno value, and then leaves `stat` as it was.
    virtual int statLink(const char* path, Stat& stat) = 0;

    /// The same, by way of `folder` if `path` is that of one of its entries.
    [[nodiscard]] virtual int statEntry(const PinnedFolder&, const char* path, Stat& stat)
    {
        return statLink(path, stat);
    }

    /// Returns true if `path` leads to something, links followed (access(2), F_OK).
    virtual bool exists(const char* path) = 0;

    /// The handle of the object at `path`, links not followed; one that is not known where the file
    /// system has none.
    virtual FileHandle handle(const char* path) = 0;
};

} // namespace zef

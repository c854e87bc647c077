// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "ZEFFilesystemTools/Platform/Disk/PinnedFolder.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace zef {
namespace {

class KernelFileSystem final : public FileSystem {
public:
    // An empty path would mean the current folder.
    int statLink(const char* path, Stat& stat) override
    {
        return *path ? statAt(AT_FDCWD, path, stat) : ENOENT;
    }

    int statEntry(const PinnedFolder& folder, const char* path, Stat& stat) override
    {
        const auto entry = folder.entry(path);
        return entry ? statAt(entry->folder, entry->name, stat) : statLink(path, stat);
    }

    bool exists(const char* path) override { return ::access(path, F_OK) == 0; }

    FileHandle handle(const char* path) override
    {
        return *path ? handleAt(AT_FDCWD, path) : FileHandle();
    }
};

} // namespace

FileSystem& FileSystem::system()
{
    return immortal<KernelFileSystem>();
}

} // namespace zef

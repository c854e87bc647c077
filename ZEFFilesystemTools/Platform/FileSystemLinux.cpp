// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/FileSystem.h"

#include "ZEFFilesystemTools/Platform/LinuxCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace zef {
namespace {

class KernelFileSystem final : public FileSystem {
public:
    int statLink(const char* path, Stat& stat) override { return statAt(AT_FDCWD, path, stat); }

    bool exists(const char* path) override { return ::access(path, F_OK) == 0; }

    FileHandle handle(const char* path) override { return handleAt(AT_FDCWD, path); }
};

} // namespace

FileSystem& FileSystem::system()
{
    static auto& fileSystem = *new KernelFileSystem; // never destroyed: late threads may still ask
    return fileSystem;
}

} // namespace zef

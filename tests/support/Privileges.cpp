// SPDX-License-Identifier: MIT
#include "tests/support/Privileges.h"

#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <unistd.h>

bool mayOpenByHandle(const std::string& path)
{
    constexpr unsigned longestHandle = 128;
    alignas(struct file_handle) unsigned char memory[sizeof(struct file_handle) + longestHandle];
    auto* handle = reinterpret_cast<struct file_handle*>(memory);
    handle->handle_bytes = longestHandle;
    int mountID = 0;
    if (::name_to_handle_at(AT_FDCWD, path.c_str(), handle, &mountID, 0) != 0)
        return false;
    const int folder = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const int opened = ::open_by_handle_at(folder, handle, O_PATH | O_CLOEXEC);
    ::close(opened);
    ::close(folder);
    return opened >= 0;
}

bool ignoresPermissions()
{
    TemporaryFolder folder;
    folder.write("file");
    folder.chmod("file", 0);
    return ::access(folder.path("file").c_str(), R_OK) == 0;
}

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/BoundedFile.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace zef {
namespace {

constexpr std::size_t usualReadSize = 65536;

// Room for one byte more than expected, so that the end shows at the first try.
Expected<std::string> readAll(int descriptor, std::size_t expected, std::size_t limit)
{
    std::string bytes(expected + 1, '\0');
    std::size_t length = 0;
    while (length <= limit) {
        // It has grown since, or its file system doesn't say how long files are.
        if (length == bytes.size())
            bytes.resize(std::min(limit + 1, std::max(2 * length, usualReadSize)));
        const auto count = ::read(descriptor, bytes.data() + length, bytes.size() - length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return fileErrorOfErrno(errno);
        length += static_cast<std::size_t>(count);
        if (count == 0) {
            bytes.resize(length);
            return bytes;
        }
    }
    return FileError::io;
}

Expected<BoundedFile> readOpened(int descriptor, std::size_t limit)
{
    Stat stat;
    if (const int error = statAt(descriptor, "", stat))
        return fileErrorOfErrno(error);
    if (!stat.isRegularFile() || stat.size > limit)
        return FileError::io;
    auto bytes = readAll(descriptor, stat.size, limit);
    if (!bytes)
        return bytes.error();
    return BoundedFile{ .stat = stat, .bytes = *std::move(bytes) };
}

} // namespace

Expected<BoundedFile> readBoundedFile(const char* path, std::size_t limit, FinalLink link)
{
    const int linkFlag = link == FinalLink::refused ? O_NOFOLLOW : 0;
    auto& reserve = DescriptorReserve::shared();
    const int descriptor = reserve.openAt(
        AT_FDCWD, path, O_RDONLY | O_NONBLOCK | O_NOCTTY | linkFlag);
    if (descriptor < 0)
        return fileErrorOfErrno(errno);
    auto file = readOpened(descriptor, limit);
    reserve.close(descriptor);
    return file;
}

} // namespace zef

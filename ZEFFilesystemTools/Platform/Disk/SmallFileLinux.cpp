// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/SmallFile.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zef {
namespace {

int readAll(int descriptor, std::string& bytes)
{
    std::size_t length = 0;
    for (;;) {
        const auto count = ::read(descriptor, bytes.data() + length, bytes.size() - length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        length += static_cast<std::size_t>(count);
        if (length > largestSmallFile)
            return EFBIG;
        if (count == 0)
            break;
        // It has grown since, or its file system doesn't tell sizes.
        if (length == bytes.size())
            bytes.resize(largestSmallFile + 1);
    }
    bytes.resize(length);
    return 0;
}

int readOpened(int descriptor, Stat& stat, std::string& bytes)
{
    if (const int error = statAt(descriptor, "", stat))
        return error;
    if (!S_ISREG(stat.mode))
        return EINVAL;
    if (!isSmallFile(stat))
        return EFBIG;
    bytes.resize(stat.size + 1); // one more, so that the end shows at the first try
    return readAll(descriptor, bytes);
}

} // namespace

bool isSmallFile(const Stat& stat)
{
    return S_ISREG(stat.mode) && stat.size <= largestSmallFile;
}

int readSmallFile(const char* path, Stat& stat, std::string& bytes)
{
    auto& reserve = DescriptorReserve::shared();
    const int descriptor = reserve.openAt(
        AT_FDCWD, path, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY);
    if (descriptor < 0)
        return errno;
    const int error = readOpened(descriptor, stat, bytes);
    reserve.close(descriptor);
    return error;
}

} // namespace zef

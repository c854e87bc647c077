// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/MimeFile.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zef {
namespace {

// The largest file of a usual system's database has 40 KiB; a hundred times that bounds the memory
// and, to a second or two, the time that a broken or hostile one can take.
constexpr std::size_t mostBytes = std::size_t{ 4 } << 20U;

// One byte beyond what is allowed tells a file that grows meanwhile.
bool readUpToLimit(int file, std::size_t expected, std::string& text)
{
    text.resize(expected + 1);
    std::size_t length = 0;
    while (true) {
        const auto count = read(file, text.data() + length, text.size() - length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        length += static_cast<std::size_t>(count);
        if (length > mostBytes)
            return false;
        if (count == 0)
            break;
        if (length == text.size())
            text.resize(2 * length);
    }
    text.resize(length);
    return true;
}

bool readRegularFile(int file, std::string& text)
{
    struct stat status { };
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode)
        && static_cast<std::uintmax_t>(status.st_size) <= mostBytes
        && readUpToLimit(file, static_cast<std::size_t>(status.st_size), text);
}

} // namespace

MimeFileResult readMimeFile(const std::string& path, std::string& text)
{
    text.clear();
    // Opening a FIFO for reading would otherwise wait for a writer.
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    // A program that runs as somebody else may have the home of a user who lets nobody in.
    if (file < 0)
        return errno == ENOENT || errno == ENOTDIR || errno == EACCES ? MimeFileResult::missing
                                                                      : MimeFileResult::unusable;
    const bool isRead = readRegularFile(file, text);
    close(file);
    if (!isRead)
        text.clear();
    return isRead ? MimeFileResult::read : MimeFileResult::unusable;
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "benchmarks/support/Floors.h"

#include <cstdint>

#include <dirent.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t bufferSize = 32768;
constexpr std::uint32_t folderMask = IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF | IN_DONT_FOLLOW
    | IN_MASK_ADD | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ONLYDIR
    | IN_EXCL_UNLINK;

bool statEntry(int folder, const char* name, bool& isFolder)
{
    struct statx result;
    if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
            STATX_BASIC_STATS | STATX_BTIME, &result)
        != 0)
        return false;
    isFolder = S_ISDIR(result.stx_mode);
    return true;
}

bool statEntry(int folder, const char* name)
{
    bool isFolder = false;
    return statEntry(folder, name, isFolder);
}

bool isDotOrDotDot(const char* name)
{
    return name[0] == '.' && (!name[1] || (name[1] == '.' && !name[2]));
}

std::size_t walkByHand(int parent, const char* name)
{
    const int folder = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return 0;
    std::size_t found = 0;
    alignas(dirent64) char buffer[bufferSize];
    for (ssize_t length; (length = ::getdents64(folder, buffer, bufferSize)) > 0;) {
        for (ssize_t offset = 0; offset < length;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + offset);
            offset += entry->d_reclen;
            bool isFolder = false;
            if (isDotOrDotDot(entry->d_name))
                continue;
            found += statEntry(folder, entry->d_name, isFolder);
            found += isFolder ? walkByHand(folder, entry->d_name) : 0;
        }
    }
    ::close(folder);
    return found;
}

} // namespace

std::size_t listByHand(const std::string& path)
{
    const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return 0;
    std::size_t found = 0;
    alignas(dirent64) char buffer[bufferSize];
    for (ssize_t length; (length = ::getdents64(folder, buffer, bufferSize)) > 0;) {
        for (ssize_t offset = 0; offset < length;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + offset);
            found += statEntry(folder, entry->d_name);
            offset += entry->d_reclen;
        }
    }
    ::close(folder);
    return found - 2; // "." and ".."
}

std::size_t walkByHand(const std::string& path)
{
    return walkByHand(AT_FDCWD, path.c_str());
}

std::size_t statByHand(const std::vector<std::string>& paths)
{
    std::size_t found = 0;
    for (const auto& path : paths) {
        struct stat result;
        found += ::lstat(path.c_str(), &result) == 0;
    }
    return found;
}

std::size_t watchByHand(int queue, const std::vector<std::string>& paths)
{
    std::size_t watched = 0;
    for (const auto& path : paths)
        watched += ::inotify_add_watch(queue, path.c_str(), folderMask) >= 0;
    return watched;
}

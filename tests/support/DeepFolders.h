// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// A chain of folders of any length, deeper than paths can name: each is named "d" and holds the
/// files "a" and "z" and the next folder. Removed at the end; holds at most two descriptors.
class DeepFolders {
public:
    /// In the folder at `path`, which must not hold any of these names.
    DeepFolders(const std::string& path, int depth)
        : _folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        require(_folder);
        int level = ::dup(_folder);
        for (int number = 0; number < depth; ++number) {
            makeFile(level, "a");
            makeFile(level, "z");
            require(::mkdirat(level, "d", 0777));
            const int next = ::openat(level, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            require(next);
            ::close(level);
            level = next;
        }
        ::close(level);
    }

    ~DeepFolders()
    {
        while (removeTop()) { }
        ::close(_folder);
    }

    DeepFolders(const DeepFolders&) = delete;
    DeepFolders& operator=(const DeepFolders&) = delete;

private:
    static void require(int result)
    {
        if (result < 0)
            throw std::system_error(errno, std::generic_category(), "deep folders");
    }

    static void makeFile(int folder, const char* name)
    {
        const int file = ::openat(folder, name, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        require(file);
        ::close(file);
    }

    // The folder below the topmost takes its place.
    bool removeTop()
    {
        ::unlinkat(_folder, "a", 0);
        ::unlinkat(_folder, "z", 0);
        if (::renameat(_folder, "d", _folder, "top") != 0)
            return false;
        for (const auto* name : { "a", "z", "d" })
            ::renameat(_folder, (std::string("top/") + name).c_str(), _folder, name);
        return ::unlinkat(_folder, "top", AT_REMOVEDIR) == 0;
    }

    int _folder;
};

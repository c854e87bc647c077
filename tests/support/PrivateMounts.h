// SPDX-License-Identifier: MIT
#pragma once

#include <fstream>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

/// Mounts of its own for a child process, which nobody else sees and which end with it; also for an
/// ordinary user, where the system lets users have name spaces (user_namespaces(7)).
class PrivateMounts {
public:
    PrivateMounts()
    {
        const auto user = std::to_string(::getuid());
        const auto group = std::to_string(::getgid());
        if (::unshare(CLONE_NEWNS) != 0) {
            if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                return;
            write("/proc/self/setgroups", "deny");
            write("/proc/self/uid_map", user + " " + user + " 1");
            write("/proc/self/gid_map", group + " " + group + " 1");
        }
        _areHad = ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    /// Whether there are such mounts.
    explicit operator bool() const { return _areHad; }

    /// Mounts a new, empty file system in memory; NO on failure.
    bool mountMemory(const std::string& folder)
    {
        return ::mount("memory", folder.c_str(), "tmpfs", 0, nullptr) == 0;
    }

    /// Mounts `lower` seen through `upper` at `folder` (overlayfs); NO on failure.
    bool mountOverlay(const std::string& lower, const std::string& upper, const std::string& work,
        const std::string& folder)
    {
        const auto options = "lowerdir=" + lower + ",upperdir=" + upper + ",workdir=" + work;
        return ::mount("overlay", folder.c_str(), "overlay", 0, options.c_str()) == 0;
    }

    /// NO while anything on it is in use.
    bool unmount(const std::string& folder) { return ::umount(folder.c_str()) == 0; }

private:
    static void write(const char* path, const std::string& text) { std::ofstream(path) << text; }

    bool _areHad = false;
};

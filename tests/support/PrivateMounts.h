// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

/// Mounts that only one child process sees, and that end with it. An ordinary user can have them
/// too where the system permits user namespaces (user_namespaces(7)).
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

    /// False if the system permits no such mounts.
    explicit operator bool() const { return _areHad; }

    /// Mounts a new, empty file system in memory; false on failure.
    bool mountMemory(const std::string& folder)
    {
        return ::mount("memory", folder.c_str(), "tmpfs", 0, nullptr) == 0;
    }

    /// Mounts `lower` seen through `upper` at `folder` (overlayfs); false on failure.
    bool mountOverlay(const std::string& lower, const std::string& upper, const std::string& work,
        const std::string& folder)
    {
        const auto options = "lowerdir=" + lower + ",upperdir=" + upper + ",workdir=" + work;
        return ::mount("overlay", folder.c_str(), "overlay", 0, options.c_str()) == 0;
    }

    /// False while anything on it is in use.
    bool unmount(const std::string& folder) { return ::umount(folder.c_str()) == 0; }

private:
    static void write(const char* path, const std::string& text) { std::ofstream(path) << text; }

    bool _areHad = false;
};

/// Runs `work` in a child process with mounts of its own, the first of which is a new file system
/// in memory at `folder`. Skips the test where the process may not mount anything.
inline void runWithVolume(
    const std::string& folder, const std::function<void(PrivateMounts&)>& work)
{
    runInChildProcess([&] {
        PrivateMounts mounts;
        if (!mounts || !mounts.mountMemory(folder))
            GTEST_SKIP() << "the process may not mount anything";
        work(mounts);
    });
}

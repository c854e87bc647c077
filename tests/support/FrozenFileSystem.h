// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include <map>
#include <mutex>
#include <utility>

/// The real file system with time stamps and sizes that stand still: each object is described as it
/// was first seen. Replaces the shared one while it lives. Any thread.
class FrozenFileSystem final : public zef::FileSystem {
public:
    FrozenFileSystem() { replaceShared(this); }
    ~FrozenFileSystem() override { replaceShared(nullptr); }
    FrozenFileSystem(const FrozenFileSystem&) = delete;
    FrozenFileSystem& operator=(const FrozenFileSystem&) = delete;

    int statLink(const char* path, zef::Stat& stat) override
    {
        zef::Stat now;
        const int error = system().statLink(path, now);
        if (error)
            return error;
        std::lock_guard lock(_mutex);
        stat = _first.try_emplace({ now.device, now.inode }, now).first->second;
        return 0;
    }

    bool exists(const char* path) override { return system().exists(path); }
    zef::FileHandle handle(const char* path) override { return system().handle(path); }

private:
    std::mutex _mutex;
    std::map<std::pair<std::uint32_t, std::uint64_t>, zef::Stat> _first;
};

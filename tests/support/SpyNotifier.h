// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <vector>

/// The real notifier; the test sees what is opened. Replaces the shared one while it lives. Any
/// thread.
class SpyNotifier final : public zef::ChangeNotifier {
public:
    SpyNotifier() { replaceShared(this); }
    ~SpyNotifier() override { replaceShared(nullptr); }
    SpyNotifier(const SpyNotifier&) = delete;
    SpyNotifier& operator=(const SpyNotifier&) = delete;

    /// How often the file of `item` was opened.
    std::ptrdiff_t openCount(const ZEFFileItem& item) const
    {
        std::lock_guard lock(_mutex);
        return std::count(_openedInodes.begin(), _openedInodes.end(), item.fileiNode());
    }

    int createQueue() override { return system().createQueue(); }

    int open(const zef::FSRef& ref, const zef::FileURL& url) override
    {
        std::lock_guard lock(_mutex);
        _openedInodes.push_back(ref.inode());
        return system().open(ref, url);
    }

    int poll(int token, const zef::FSRef& ref, const zef::FileURL& url) override
    {
        return system().poll(token, ref, url);
    }

    void close(int token) override { system().close(token); }
    void beginRound() override { system().beginRound(); }
    void endRound() override { system().endRound(); }
    void setWatchLimit(std::size_t limit) override { system().setWatchLimit(limit); }

private:
    mutable std::mutex _mutex;
    std::vector<std::uint64_t> _openedInodes;
};

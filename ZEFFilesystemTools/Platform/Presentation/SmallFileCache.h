// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/BoundedFile.h"
#include "ZEFFilesystemTools/Platform/Disk/FileStamps.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Volumes/DeviceKindCache.h"

#include <array>
#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>

namespace zef {

/// Remembers what the last few files of at most 64 KiB meant, for as long as their numbers, sizes
/// and time stamps show that nobody has written them. A file that was written a moment ago (0.05 s,
/// or 2 s where another host may write it) is read anew each time, because the next write might
/// leave no trace. Any thread; no lock is held while the file system works.
template <typename Meaning, std::size_t Capacity> class SmallFileCache {
public:
    /// `clock` is borrowed and should be the one that the files' stamps come from.
    explicit SmallFileCache(Clock& clock = Clock::system())
        : _clock(clock)
    {
    }

    /// What the file at `path`, which `seen` was just taken of, means: the result of
    /// `parse(bytes)`. Null if it is not a small regular file, can't be read, or was replaced
    /// meanwhile.
    template <typename Parse>
    std::shared_ptr<const Meaning> read(const char* path, const Stat& seen, const Parse& parse)
    {
        if (!seen.isRegularFile() || seen.size > largestFile)
            return nullptr;
        const auto now = _clock.now();
        if (auto known = find(seen.device, FileStamps(seen, now, StampClock::otherHosts)))
            return known;
        auto file = readBoundedFile(path, largestFile, FinalLink::refused);
        if (!file || ObjectNumbers::of(file->stat) != ObjectNumbers::of(seen))
            return nullptr;
        auto meaning = std::make_shared<const Meaning>(parse(std::move(file->bytes)));
        const FileStamps stamps(file->stat, now, stampClock(seen.device, path));
        const bool isSettled = !stamps.mayHaveChangedSince(stamps);
        if (isSettled)
            keep({ seen.device, stamps, meaning });
        return meaning;
    }

    void forget()
    {
        std::array<File, Capacity> forgotten; // dies outside of the lock
        std::lock_guard lock(_mutex);
        std::swap(_files, forgotten);
    }

private:
    static constexpr std::size_t largestFile = 65536;

    struct File {
        std::uint32_t device = 0;
        FileStamps stamps;
        std::shared_ptr<const Meaning> meaning;
    };

    StampClock stampClock(std::uint32_t device, const char* path)
    {
        const bool isOurs = _deviceKinds.kind(device, path) == DeviceKind::local;
        return isOurs ? StampClock::ours : StampClock::otherHosts;
    }

    std::shared_ptr<const Meaning> find(std::uint32_t device, const FileStamps& stamps)
    {
        std::lock_guard lock(_mutex);
        for (const auto& file : _files) {
            if (file.meaning && file.device == device && !stamps.mayHaveChangedSince(file.stamps))
                return file.meaning;
        }
        return nullptr;
    }

    // In the place of the oldest, which dies outside of the lock.
    void keep(File file)
    {
        std::lock_guard lock(_mutex);
        std::swap(_files[_next], file);
        _next = (_next + 1) % Capacity;
    }

    Clock& _clock;
    DeviceKindCache _deviceKinds;
    std::mutex _mutex;
    std::array<File, Capacity> _files;
    std::size_t _next = 0;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/FolderIndex.h"

#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"

#include <algorithm>
#include <cstddef>
#include <memory>

#include <dirent.h>

// An index is read in one go and never changed: all names one behind the other in one string, and
// beside it the entries, sorted by inode number when all are read, each with the place of its name.
// Where a listing gives other numbers than the entries have, each entry is asked for its own.

namespace zef {
namespace {

constexpr std::size_t bufferSize = 32768;
constexpr std::size_t mostEntriesAsked = 2000;
constexpr double longestTick = 0.02; // 0.01 s with HZ=100, and some room

bool areEqual(const std::timespec& one, const std::timespec& other)
{
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

// The system's own clock, because the stamp comes from it too.
bool isRecent(const std::timespec& stamp)
{
    return Clock::system().now().secondsSince1970() - secondsOfTimeStamp(stamp) < longestTick;
}

} // namespace

FolderIndex::FolderIndex(const Stat& folder, std::size_t limit)
    : _folder(folder)
    , _limit(limit)
    , _secondsWhenRead(Clock::shared().monotonicSeconds())
    , _mayHaveMissedAChange(isRecent(folder.statusChangeTime))
{
}

Ref<FolderIndex> FolderIndex::read(int descriptor, std::size_t limit, EntryNumbers numbers)
{
    Stat folder;
    if (statAt(descriptor, "", folder) != 0)
        return nullptr;
    const bool askEach = numbers == EntryNumbers::asked
        || (numbers == EntryNumbers::automatic && !hasLastingNumbers(fileSystemType(descriptor)));
    auto index = Ref<FolderIndex>::adopt(new FolderIndex(folder, limit));
    if (!index->readEntries(
            descriptor, askEach ? std::min(limit, mostEntriesAsked) : limit, askEach))
        return nullptr;
    index->finish();
    return index;
}

std::string_view FolderIndex::name(std::uint64_t inode, std::size_t position) const
{
    const auto [begin, end] = std::equal_range(_entries.begin(), _entries.end(), Entry{ inode, 0 },
        [](const Entry& one, const Entry& other) { return one.inode < other.inode; });
    if (static_cast<std::size_t>(end - begin) <= position)
        return {};
    const auto entry = begin + static_cast<std::ptrdiff_t>(position);
    return _names.c_str() + entry->nameOffset;
}

std::string_view FolderIndex::folderName(std::size_t position) const
{
    if (position >= _folderNameOffsets.size())
        return {};
    return _names.c_str() + _folderNameOffsets[position];
}

bool FolderIndex::isOf(const Stat& stat) const
{
    return stat.device == _folder.device && stat.inode == _folder.inode && stat.size == _folder.size
        && areEqual(stat.modificationTime, _folder.modificationTime)
        && areEqual(stat.statusChangeTime, _folder.statusChangeTime);
}

bool FolderIndex::readEntries(int descriptor, std::size_t limit, bool askEach)
{
    const auto buffer = std::make_unique_for_overwrite<std::byte[]>(bufferSize);
    for (;;) {
        const auto length = ::getdents64(descriptor, buffer.get(), bufferSize);
        if (length <= 0) {
            _isComplete = length == 0;
            return _isComplete;
        }
        for (const auto* place = buffer.get(); place < buffer.get() + length;) {
            const auto* entry = reinterpret_cast<const dirent64*>(place);
            place += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name == "." || name == "..")
                continue;
            if (count() == limit)
                return true;
            Stat stat;
            if (!askEach)
                add(entry->d_ino, name, entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN);
            else if (statAt(descriptor, entry->d_name, stat) == 0)
                add(stat.inode, name, stat.isFolder());
        }
    }
}

void FolderIndex::add(std::uint64_t inode, std::string_view name, bool mayBeFolder)
{
    if (mayBeFolder)
        _folderNameOffsets.push_back(_names.size());
    _entries.push_back({ inode, _names.size() });
    _names.append(name).push_back('\0');
}

void FolderIndex::finish()
{
    std::stable_sort(_entries.begin(), _entries.end(),
        [](const Entry& one, const Entry& other) { return one.inode < other.inode; });
    _entries.shrink_to_fit();
    _folderNameOffsets.shrink_to_fit();
    _names.shrink_to_fit();
}

} // namespace zef

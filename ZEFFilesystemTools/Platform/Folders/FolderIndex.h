// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zef {

/// Where the inode numbers of a folder's entries come from.
enum class EntryNumbers {
    /// The folder's listing.
    listed,
    /// Each entry itself, at one system call each: for file systems whose listings tell other
    /// numbers.
    asked,
    /// Whichever is right for the folder's file system.
    automatic,
};

/// The names in a folder by inode number, as they were at one moment. The numbers are a hint: the
/// entry that something is mounted on is listed with the number of what is covered. Immutable; any
/// thread.
class FolderIndex final : public ZEFObject {
public:
    /// Reads at most `limit` entries of the folder that is open for reading as `descriptor`, from
    /// where its position is; asked numbers of at most 2000. Null when the folder can't be read.
    static Ref<FolderIndex> read(
        int descriptor, std::size_t limit, EntryNumbers = EntryNumbers::automatic);

    /// The name at `position` among those of the object with this number; empty when there are no
    /// more. Borrowed from the index.
    std::string_view name(std::uint64_t inode, std::size_t position = 0) const;

    /// The name at `position` among those of the entries that are, or may be, folders, in the order
    /// of the listing; empty when there are no more. Borrowed from the index.
    std::string_view folderName(std::size_t position) const;

    std::size_t count() const { return _entries.size(); }

    /// Whether nothing would be gained by reading the folder with this limit.
    bool covers(std::size_t limit) const { return _isComplete || limit <= _limit; }

    /// Whether the folder, which `stat` describes now, still is as it was read so far as its time
    /// stamps and its size tell.
    bool isOf(const Stat& stat) const;
    bool isOfSameFolder(const FolderIndex& other) const;

    /// Whether a change right after the reading may have left no trace in the folder's time stamps,
    /// which advance only with the kernel's tick.
    bool mayHaveMissedAChange() const { return _mayHaveMissedAChange; }

    /// On the clock that never goes backwards.
    double secondsWhenRead() const { return _secondsWhenRead; }

private:
    struct Entry {
        std::uint64_t inode;
        std::size_t nameOffset;
    };

    FolderIndex(const Stat& folder, std::size_t limit);
    bool readEntries(int descriptor, std::size_t limit, bool askEach);
    void add(std::uint64_t inode, std::string_view name, bool mayBeFolder);
    void finish();

    Stat _folder;
    std::size_t _limit;
    bool _isComplete = false;
    std::vector<Entry> _entries;
    std::vector<std::size_t> _folderNameOffsets;
    std::string _names;
    double _secondsWhenRead;
    bool _mayHaveMissedAChange;
};

} // namespace zef

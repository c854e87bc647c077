// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
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
    /// Each entry itself, at one system call each: for file systems whose listings give other
    /// numbers.
    asked,
    /// Whichever is right for the folder's file system.
    automatic,
};

/// The names in a folder by inode number, as they were at one moment. The numbers are a hint: an
/// entry that something is mounted on is listed with the number of what is covered. Immutable; any
/// thread.
class FolderIndex final : public ZEFObject {
public:
    /// Reads at most `limit` entries of the folder that is open for reading as `descriptor`, from
    /// where its position is; asked numbers of at most 2000. Null if the folder can't be read.
    static Ref<FolderIndex> read(
        int descriptor, std::size_t limit, EntryNumbers = EntryNumbers::automatic);

    /// The name at `position` among those of the object with this number; empty if there are no
    /// more. Borrowed from the index.
    std::string_view name(std::uint64_t inode, std::size_t position = 0) const;

    /// The name at `position` among those of the entries that are, or may be, folders, in the order
    /// of the listing; empty if there are no more. Borrowed from the index.
    std::string_view folderName(std::size_t position) const;

    std::size_t count() const { return _entries.size(); }

    /// Whether reading the folder with this limit would give no more.
    bool covers(std::size_t limit) const { return _isComplete || limit <= _limit; }

    /// Whether the folder, which `stat` describes now, still has the time stamps and the size that
    /// it had when it was read.
    bool isOf(const Stat& stat) const;
    ObjectNumbers folderNumbers() const { return ObjectNumbers::of(_folder); }

    /// Whether the folder may have changed after it was read and before this moment, on the clock
    /// that never goes backwards, though `isOf` doesn't show it: time stamps advance only with the
    /// kernel's tick.
    bool mayHaveMissedAChangeBefore(double seconds) const
    {
        return _mayHaveMissedAChange && _secondsWhenRead <= seconds;
    }

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

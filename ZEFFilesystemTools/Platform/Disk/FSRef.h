// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileHandle.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"

#include <cstdint>
#include <type_traits>

namespace zef {

/// A reference to an object on disk that stays the object's while it is renamed or moved: 80 bytes
/// without pointers, to be copied freely. `Locator` turns it into the object's current URL.
///
/// Any thread; plain data.
class ZEF_EXPORT FSRef {
public:
    /// An empty reference, to no object.
    FSRef() = default;

    /// The reference to the object that `stat` describes, in the folder with inode number
    /// `parentInode` (0: not known), without a handle.
    explicit FSRef(const Stat& stat, std::uint64_t parentInode = 0);

    bool isEmpty() const { return !_magic; }
    std::uint32_t device() const { return static_cast<std::uint32_t>(_device); }
    std::uint64_t inode() const { return _inode; }
    bool isFolder() const;

    bool hasBirthTime() const;
    /// Nanoseconds since 1 January 1970.
    std::int64_t birthTime() const { return _birthTime; }

    std::uint64_t parentInode() const { return _parentInode; }
    void setParentInode(std::uint64_t);

    FileHandle handle() const;
    bool hasHandle() const { return _handleLength; }
    void setHandle(const FileHandle&);

    /// Whether both have the same device and inode number; says nothing about a number that was
    /// given to another object since (see `sameObject`).
    bool hasNumbersOf(const FSRef& other) const;
    bool hasNumbersOf(const Stat&) const;

private:
    std::uint32_t _magic = 0;
    std::uint8_t _flags = 0;
    std::uint8_t _handleType = 0;
    std::uint8_t _handleLength = 0;
    [[maybe_unused]] std::uint8_t _reserved = 0;
    std::uint64_t _device = 0;
    std::uint64_t _inode = 0;
    std::int64_t _birthTime = 0;
    std::uint64_t _parentInode = 0;
    std::array<std::byte, 40> _handle{};
};

static_assert(sizeof(FSRef) == 80 && std::is_trivially_copyable_v<FSRef>);

/// Whether `stat`, just taken of `path` without following links, is of the very object that
/// `recorded` refers to. Linux gives the inode number of a deleted file to the next one at once, so
/// equal numbers don't suffice: another birth time makes another object, unless the handles agree
/// (overlayfs changes the birth time of a file at its first write). Asks the disk for a handle only
/// when the birth times differ. Any thread.
ZEF_EXPORT bool sameObject(const Stat& stat, const FSRef& recorded, const char* path);

} // namespace zef

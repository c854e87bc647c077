// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/KnownEntries.h"
#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"
#include "ZEFFilesystemTools/Platform/Objects/Export.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace zef {

/// One entry of a folder: its name, what the system says of it, and a reference to it.
struct ZEF_EXPORT CatalogEntry {
    /// Names have 255 bytes at the most (NAME_MAX, limits.h(0p)); a NUL may follow.
    std::array<char, 256> nameBytes;
    std::size_t nameLength = 0;
    bool isFolder = false;
    FSRef ref;
    Stat stat;

    std::string_view name() const { return { nameBytes.data(), nameLength }; }
};

/// Reads the entries of one folder, in the file system's order, without "." and "..".
///
/// An entry that is there from beginning to end is delivered exactly once. One thread at a time.
class ZEF_EXPORT CatalogIterator {
public:
    using Opened = Expected<std::unique_ptr<CatalogIterator>>;

    virtual ~CatalogIterator() = default;

    /// Fills `entries` from the front and sets `count` to how many there are. Returns `none` while
    /// there may be more, `noMoreItems` with the last ones (perhaps none), `accessDenied` for a
    /// folder that may not be read, or another error.
    virtual FileError next(std::span<CatalogEntry> entries, std::size_t& count) = 0;

    /// Opens the folder that `entry`, read last or among those, stands for and that is at `url`; as
    /// `Catalog::openIterator` does, but without looking up its whole path where that can be
    /// spared.
    virtual Opened openSubfolder(const CatalogEntry& entry, const FileURL& url);

    /// Holds no descriptor until the next read. It keeps what is still to be delivered.
    virtual void suspend() { }

    /// For the next read after a suspension: it will find this folder from `subfolder`, one of its
    /// entries that is not needed any more, even if both were moved meanwhile.
    virtual void resumeFrom(CatalogIterator& subfolder) { static_cast<void>(subfolder); }

    /// From now on entries that `known` (borrowed; null: none) knows are left out.
    virtual void setKnownEntries(KnownEntries* known) = 0;
};

} // namespace zef

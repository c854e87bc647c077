// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/CatalogEntry.h"
#include "ZEFFilesystemTools/Platform/Catalog/KnownEntries.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace zef {

/// Reads the entries of one folder, in the file system's order, without "." and "..".
///
/// An entry that is there from beginning to end is delivered exactly once. One thread at a time.
class ZEF_EXPORT CatalogIterator {
public:
    virtual ~CatalogIterator() = default;

    /// Fills `entries` from the front and sets `count` to how many there are. Returns
    /// `noError` while there may be more, `noMoreItems` with the last ones (perhaps none),
    /// `accessDenied` for a folder that may not be read, or another error.
    virtual FileError next(std::span<CatalogEntry> entries, std::size_t& count) = 0;

    /// Opens the folder that `entry`, read last or among those, stands for and that is at `url`; as
    /// `Catalog::openIterator` does, but without looking up its whole path where that can be
    /// spared.
    virtual FileError openSubfolder(
        const CatalogEntry& entry, const FileURL& url, std::unique_ptr<CatalogIterator>& iterator);

    /// Holds no descriptor until the next read. It keeps what is still to be delivered.
    virtual void suspend() { }

    /// For the next read after a suspension: it will find this folder from `subfolder`, one of its
    /// entries that is not needed any more, wherever both were moved meanwhile.
    virtual void resumeFrom(CatalogIterator& subfolder) { static_cast<void>(subfolder); }

    /// From now on entries that `known` (borrowed) knows are left out.
    virtual void setKnownEntries(KnownEntries* known) = 0;
};

} // namespace zef

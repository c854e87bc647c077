// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/CatalogIterator.h"
#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <memory>

namespace zef {

/// Reads folders. Any thread.
class Catalog : public SharedService<Catalog> {
public:
    virtual ~Catalog() = default;

    static Catalog& system();

    /// Opens the folder that `ref` (null: none) refers to, last seen at `folder`. A folder that may
    /// not be read opens all the same; the first read fails.
    virtual CatalogIterator::Opened openIterator(const FSRef* ref, const FileURL& folder) = 0;

    /// The number of entries of the folder.
    virtual Expected<std::size_t> countEntries(const FSRef* ref, const FileURL& folder) = 0;

    struct CountedFolder {
        std::size_t count = 0;
        /// Delivers what was counted without reading the folder again; may be null.
        std::unique_ptr<CatalogIterator> iterator;
    };

    /// As `countEntries`, for a caller that may need the entries next.
    virtual Expected<CountedFolder> countEntriesAndKeep(const FSRef* ref, const FileURL& folder);
};

} // namespace zef

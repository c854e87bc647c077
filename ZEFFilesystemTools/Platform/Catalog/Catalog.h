// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/CatalogIterator.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <memory>

namespace zef {

/// Reads folders. Any thread.
class Catalog : public SharedService<Catalog> {
public:
    virtual ~Catalog() = default;

    static Catalog& system();

    /// Opens the folder that `ref` (null: none) refers to, last seen at `folder`. Returns
    /// `noError` and an iterator, or an error and none. A folder that may not be read opens
    /// without an error; its iterator tells.
    virtual FileError openIterator(
        const FSRef* ref, const FileURL& folder, std::unique_ptr<CatalogIterator>& iterator)
        = 0;

    /// Sets `count` to the number of entries of the folder, 0 when they can't be counted.
    virtual FileError countEntries(const FSRef* ref, const FileURL& folder, std::size_t& count) = 0;

    /// The same, for somebody who may want to see the entries next: `iterator` delivers what was
    /// counted without reading the folder again. It may stay null also after a success.
    virtual FileError countEntriesAndKeep(const FSRef* ref, const FileURL& folder,
        std::size_t& count, std::unique_ptr<CatalogIterator>& iterator);
};

} // namespace zef

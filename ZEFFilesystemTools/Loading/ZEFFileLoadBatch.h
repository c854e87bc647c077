// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <array>
#include <span>
#include <utility>
#include <vector>

/// The storage of one folder's listing, used for batch after batch.
class ZEF_INTERNAL ZEFFileLoadOperation::Batch {
public:
    static constexpr std::size_t size = 40;

    /// From now on the entries are those of `folder`, whose items `fileClass` makes.
    void setFolder(const ZEFFileItemClass& fileClass, zef::Ref<const zef::FolderPath> folder)
    {
        _fileClass = &fileClass;
        _folder = std::move(folder);
    }

    /// Whether a filter is going to ask what people are shown of the items.
    void setAskedAbout(bool isAskedAbout) { _isAskedAbout = isAskedAbout; }

    std::span<zef::CatalogEntry> entries() { return _entries; }
    const zef::CatalogEntry& entry(std::size_t index) const { return _entries[index]; }
    std::array<zef::Ref<ZEFFileItem>, size>& slots() { return _slots; }

    /// Makes the item of one entry; returns where the entry was found. The slot stays empty when
    /// no item can be made.
    zef::FileURL fillSlot(std::size_t index);

    /// The items of this batch that were made before and have another location than their entry.
    std::vector<Sighting>& sightings() { return _sightings; }

private:
    const ZEFFileItemClass* _fileClass = nullptr;
    zef::Ref<const zef::FolderPath> _folder;
    std::array<zef::CatalogEntry, size> _entries;
    std::array<zef::Ref<ZEFFileItem>, size> _slots;
    std::vector<Sighting> _sightings;
    bool _isAskedAbout = false;
};

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Loading/ZEFFileLoadBatch.h"
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"

#include <algorithm>

// The file class is the folder's, so a host's choice of class goes on into every depth.
zef::FileURL ZEFFileLoadOperation::Batch::fillSlot(std::size_t index)
{
    auto& entry = _entries[index];
    // A catalog may write a name in the form in which '/' is a character of it.
    std::replace(entry.nameBytes.begin(),
        entry.nameBytes.begin() + static_cast<std::ptrdiff_t>(entry.nameLength), '/', ':');
    if (entry.name().empty())
        return nullptr;
    const auto kind = entry.isFolder ? zef::URLKind::folder : zef::URLKind::file;
    auto url = zef::FileURL::inFolder(_folder, entry.name(), kind);
    _slots[index] = _fileClass->ZEF_newFileItemForEntry(url, entry.ref, entry.stat);
    if (_isAskedAbout)
        zef::ObjectPlace::noteFound(entry.ref, url, entry.stat);
    if (_slots[index] && !_slots[index]->ZEF_hasPathOf(url))
        _sightings.push_back({ _slots[index], url });
    return url;
}

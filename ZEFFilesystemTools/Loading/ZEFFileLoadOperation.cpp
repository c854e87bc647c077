// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Platform/Catalog.h"
#include "ZEFFilesystemTools/Platform/Log.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>

namespace {

constexpr std::size_t batchSize = 40;

} // namespace

// The storage of one folder's listing, used for batch after batch. On the heap: it is too large for
// a stack that holds one for each level of a walk.
class ZEFFileLoadOperation::Batch {
public:
    Batch(const ZEFFileItemClass& fileClass, zef::Ref<const zef::FolderPath> folder)
        : _fileClass(fileClass)
        , _folder(std::move(folder))
    {
    }

    std::span<zef::CatalogEntry> entries() { return _entries; }

    // The file class is the folder's, so a host's choice of class goes on into every depth.
    void fillSlot(std::size_t index)
    {
        auto& entry = _entries[index];
        // A catalog may write a name in the form in which '/' is a character of it.
        std::replace(entry.nameBytes.begin(),
            entry.nameBytes.begin() + static_cast<std::ptrdiff_t>(entry.nameLength), '/', ':');
        if (entry.name().empty())
            return;
        const auto kind = entry.isFolder ? zef::URLKind::folder : zef::URLKind::file;
        const auto url = zef::FileURL::inFolder(_folder, entry.name(), kind);
        _slots[index] = _fileClass.ZEF_newFileItemForEntry(url, entry.ref, entry.stat);
        if (_slots[index] && !_slots[index]->url().hasPathOf(url))
            _sightings.push_back({ _slots[index], url });
    }

    std::array<zef::Ref<ZEFFileItem>, batchSize>& slots() { return _slots; }
    std::vector<Sighting>& sightings() { return _sightings; }

private:
    const ZEFFileItemClass& _fileClass;
    zef::Ref<const zef::FolderPath> _folder;
    std::array<zef::CatalogEntry, batchSize> _entries;
    std::array<zef::Ref<ZEFFileItem>, batchSize> _slots;
    std::vector<Sighting> _sightings;
};

const zef::Class ZEFFileLoadOperation::classObject{ "ZEFFileLoadOperation",
    &ZEFLoadingOperation::classObject };

ZEFFileLoadOperation::ZEFFileLoadOperation() = default;

ZEFFileLoadOperation::~ZEFFileLoadOperation() = default;

void ZEFFileLoadOperation::setLoadingDirectory(zef::Ref<ZEFFileItem> folder)
{
    _loadingDirectory = std::move(folder);
}

void ZEFFileLoadOperation::setFileFilter(zef::Ref<ZEFFileFilter> filter)
{
    _fileFilter = std::move(filter);
}

void ZEFFileLoadOperation::main()
{
    nonRecursiveOperation();
}

void ZEFFileLoadOperation::nonRecursiveOperation()
{
    _listingResult = listFolder(_loadingDirectory.get());
}

std::int16_t ZEFFileLoadOperation::listFolder(const ZEFFileItem* folder)
{
    zef::FSRef reference;
    const auto url = folder ? folder->ZEF_locate() : zef::FileURL();
    const auto* given = url && folder->ZEF_copyReference(reference) ? &reference : nullptr;
    if (isCancelled())
        return zef::CatalogResult::noError;
    std::unique_ptr<zef::CatalogIterator> iterator;
    const auto result = zef::Catalog::shared().openIterator(given, url, iterator);
    if (result != zef::CatalogResult::noError) {
        zef::log("ZEFFileLoadOperation encountered error %d opening iterator to get the directory "
                 "contents at %s",
            result, url ? url.absoluteString().c_str() : "(null)");
        return result;
    }
    iterator->setKnownEntries(_knownEntries);
    auto batch = std::make_unique<Batch>(folder->objectClass(), url.asFolder());
    return readEntries(*iterator, *batch, url);
}

std::int16_t ZEFFileLoadOperation::readEntries(
    zef::CatalogIterator& iterator, Batch& batch, const zef::FileURL& folderURL)
{
    auto result = zef::CatalogResult::noError;
    while (result == zef::CatalogResult::noError) {
        std::size_t count = 0;
        result = iterator.next(batch.entries(), count);
        if (isCancelled() || result == zef::CatalogResult::accessDenied)
            return result;
        if (result != zef::CatalogResult::noError && result != zef::CatalogResult::noMoreItems) {
            zef::log("ZEFFileLoadOperation had error %d looping FSGetCatalogInfoBulk for directory "
                     "%s",
                result, folderURL.absoluteString().c_str());
            return result;
        }
        for (std::size_t index = 0; index < count; ++index) {
            batch.fillSlot(index);
            auto& item = batch.slots()[index];
            if (item && _fileFilter && !_fileFilter->shouldIncludeFile(item.get()))
                item = nullptr;
        }
        appendToLoadingArray(batch);
    }
    return zef::CatalogResult::noError;
}

void ZEFFileLoadOperation::appendToLoadingArray(Batch& batch)
{
    std::lock_guard lock(*loadingArrayLock());
    for (auto& item : batch.slots()) {
        if (item)
            loadingArray()->addObject(std::move(item));
    }
    std::move(batch.sightings().begin(), batch.sightings().end(), std::back_inserter(_sightings));
    batch.sightings().clear();
}

std::vector<ZEFFileLoadOperation::Sighting> ZEFFileLoadOperation::takeSightings()
{
    return std::exchange(_sightings, {});
}

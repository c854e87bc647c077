// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileFilter.h"
#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"
#include "ZEFFilesystemTools/Platform/CatalogIterator.h"

#include <span>

/// Lists the contents of a folder into `loadingArray`.
///
/// Set it up before it starts, then give it to a queue or send it `start`. Failures are logged and
/// make the result shorter.
class ZEFFileLoadOperation final : public ZEFLoadingOperation {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFFileLoadOperation();

    /// The folder to list; its own class makes the items. Borrowed; nil before it is set.
    ZEFFileItem* loadingDirectory() const { return _loadingDirectory.get(); }
    void setLoadingDirectory(zef::Ref<ZEFFileItem>);

    /// Which items are delivered; nil delivers every one. Borrowed.
    ZEFFileFilter* fileFilter() const { return _fileFilter.get(); }
    void setFileFilter(zef::Ref<ZEFFileFilter>);

    /// Lists `loadingDirectory`.
    void nonRecursiveOperation();

    /// For a folder that is listed again: entries that `known` (borrowed, may be null) knows are
    /// left out without a look at the disk.
    void setKnownEntries(zef::KnownEntries* known) { _knownEntries = known; }

    /// An item that was made before, and where the listing found its file under another path.
    struct Sighting {
        zef::Ref<ZEFFileItem> item;
        zef::FileURL url;
    };

    /// Hands over the sightings made so far. Call with `loadingArrayLock` held, or once the
    /// operation is finished.
    std::vector<Sighting> takeSightings();

    /// How the listing ended; `noError` also before it began. Read it when the operation is
    /// finished.
    std::int16_t listingResult() const { return _listingResult; }

protected:
    void main() override;

private:
    class Batch;

    ~ZEFFileLoadOperation() override;

    std::int16_t listFolder(const ZEFFileItem* folder);
    std::int16_t readEntries(zef::CatalogIterator&, Batch&, const zef::FileURL& folderURL);
    void appendToLoadingArray(Batch&);

    zef::Ref<ZEFFileItem> _loadingDirectory;
    zef::Ref<ZEFFileFilter> _fileFilter;
    zef::KnownEntries* _knownEntries = nullptr;
    /// Guarded by `loadingArrayLock`.
    std::vector<Sighting> _sightings;
    std::int16_t _listingResult = zef::CatalogResult::noError;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileItemSet.h"
#include "ZEFFilesystemTools/Loading/ZEFFilters.h"
#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"
#include "ZEFFilesystemTools/Platform/Catalog/CatalogIterator.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include <cstddef>
#include <memory>
#include <vector>

/// Lists the contents of a folder into `loadingArray`, or walks a list of files and the folders
/// among them down to a depth.
///
/// Set it up before it starts, then give it to a queue or send it `start`. Failures are logged and
/// make the result shorter. The items that it finds are made by the class of the folder's own item.
class ZEF_EXPORT ZEFFileLoadOperation final : public ZEFLoadingOperation {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFFileLoadOperation();

    /// Whether `filesToIterate` are walked; otherwise `loadingDirectory` is listed. False at first.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }

    /// The folder to list when the operation isn't recursive. Borrowed; null before it is set.
    ZEFFileItem* loadingDirectory() const { return _loadingDirectory.get(); }
    void setLoadingDirectory(zef::Ref<ZEFFileItem>);

    /// Where a recursive operation begins, a copy of what was set. Borrowed; null before it is set.
    const ZEFFileItemArray* filesToIterate() const { return _filesToIterate.get(); }
    void setFilesToIterate(const ZEFFileItemArray* files);

    /// How many levels of folders a recursive operation lists: 1 for the contents of the folders
    /// it begins with. -1, as at first, for no limit; 0 and other negative numbers list none.
    std::ptrdiff_t depth() const { return _depth; }
    void setDepth(std::ptrdiff_t depth) { _depth = depth; }

    /// Which items are delivered; null, as at first, delivers every one. Borrowed.
    ZEFFileFilter* fileFilter() const { return _fileFilter.get(); }
    void setFileFilter(zef::Ref<ZEFFileFilter>);

    /// Which folders a recursive operation descends into: a `ZEFDirectoryFilter` at first; null
    /// descends into none. Borrowed.
    ZEFDirectoryFilter* directoryFilter() const { return _directoryFilter.get(); }
    void setDirectoryFilter(zef::Ref<ZEFDirectoryFilter>);

    /// Lists `loadingDirectory`.
    void nonRecursiveOperation();

    /// Walks `filesToIterate`: what is beneath each of them first, depth first by batches, and in
    /// the end the files themselves, unless they were found on the way.
    void recursiveOperation();

    /// Lists `directory` and what is below it, unless that is deeper than `depth`, where it itself
    /// is at `level`, or it is among `checkedDirectories`, to which it is added.
    void recursivelyLoadFilesForDirectory(
        zef::Ref<ZEFFileItem> directory, std::ptrdiff_t level, ZEFFileItemSet& checkedDirectories);

    /// For a folder that is listed again: entries that `known` (borrowed, may be null) knows are
    /// left out without a look at the disk.
    void setKnownEntries(zef::KnownEntries* known) { _knownEntries = known; }

    /// What is to be listed, where somebody has opened `loadingDirectory` already.
    void setOpenedIterator(std::unique_ptr<zef::CatalogIterator> iterator);

    /// An item that was made before, and where the listing found its file under another path.
    struct Sighting {
        zef::Ref<ZEFFileItem> item;
        zef::FileURL url;
    };

    /// Hands over the sightings made so far. Call with `loadingArrayLock` held, or once the
    /// operation is finished. A recursive operation makes none.
    std::vector<Sighting> takeSightings();

    /// A folder that could not be listed, or not to its end. Null if `loadingDirectory` is.
    struct Failure {
        zef::Ref<ZEFFileItem> directory;
        zef::FileError error;
    };

    /// Hands over the failures so far, those included that are not logged (`accessDenied`). Call
    /// as `takeSightings`.
    std::vector<Failure> takeFailures();

    /// How the listing of `loadingDirectory` ended; `noError` also before it began. Read it when
    /// the operation is finished.
    zef::FileError listingResult() const { return _listingResult; }

protected:
    void main() override;

private:
    class Batch;
    class Listing;

    ~ZEFFileLoadOperation() override;

    bool walkFiles(ZEFFileItemSet&, std::vector<zef::Ref<ZEFFileItem>>& filesToAdd);
    bool addFiles(std::vector<zef::Ref<ZEFFileItem>> files);
    zef::Ref<ZEFFileItemSet> foundAmong(const std::vector<zef::Ref<ZEFFileItem>>& files) const;

    zef::Ref<ZEFFileItem> _loadingDirectory;
    zef::Ref<ZEFFileItemArray> _filesToIterate;
    zef::Ref<ZEFFileFilter> _fileFilter;
    zef::Ref<ZEFDirectoryFilter> _directoryFilter;
    std::ptrdiff_t _depth = -1;
    bool _recursive = false;
    zef::KnownEntries* _knownEntries = nullptr;
    std::unique_ptr<zef::CatalogIterator> _openedIterator;
    /// Guarded by `loadingArrayLock`.
    std::vector<Sighting> _sightings;
    /// Guarded by `loadingArrayLock`.
    std::vector<Failure> _failures;
    zef::FileError _listingResult = zef::FileError::none;
};

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Loading/ZEFFileLoadListing.h"
#include "ZEFFilesystemTools/Platform/Objects/LetOutlive.h"

#include <mutex>
#include <utility>

namespace {

constexpr std::size_t checkedDirectoriesCapacity = 300;

} // namespace

const zef::Class ZEFFileLoadOperation::classObject{ "ZEFFileLoadOperation",
    &ZEFLoadingOperation::classObject };

ZEFFileLoadOperation::ZEFFileLoadOperation()
    : _directoryFilter(ZEFDirectoryFilter::filter())
{
}

ZEFFileLoadOperation::~ZEFFileLoadOperation() = default;

void ZEFFileLoadOperation::setLoadingDirectory(zef::Ref<ZEFFileItem> folder)
{
    _loadingDirectory = std::move(folder);
}

void ZEFFileLoadOperation::setFilesToIterate(const ZEFFileItemArray* files)
{
    _filesToIterate = files ? zef::makeRef<ZEFFileItemArray>(files->count()) : nullptr;
    if (!files)
        return;
    for (const auto& file : *files)
        _filesToIterate->addObject(file);
}

void ZEFFileLoadOperation::setFileFilter(zef::Ref<ZEFFileFilter> filter)
{
    _fileFilter = std::move(filter);
}

void ZEFFileLoadOperation::setDirectoryFilter(zef::Ref<ZEFDirectoryFilter> filter)
{
    _directoryFilter = std::move(filter);
}

void ZEFFileLoadOperation::setOpenedIterator(std::unique_ptr<zef::CatalogIterator> iterator)
{
    _openedIterator = std::move(iterator);
}

void ZEFFileLoadOperation::main()
{
    if (_recursive)
        recursiveOperation();
    else
        nonRecursiveOperation();
}

void ZEFFileLoadOperation::nonRecursiveOperation()
{
    _listingResult = Listing(*this, nullptr).run(_loadingDirectory, 0);
}

void ZEFFileLoadOperation::recursiveOperation()
{
    const auto checkedDirectories = zef::makeRef<ZEFFileItemSet>(checkedDirectoriesCapacity);
    std::vector<zef::Ref<ZEFFileItem>> filesToAdd;
    if (!walkFiles(*checkedDirectories, filesToAdd) || !addFiles(std::move(filesToAdd)))
        zef::letOutlive(checkedDirectories.get(), "a cancelled walk keeps its table of folders");
}

// Returns false if the operation was cancelled.
bool ZEFFileLoadOperation::walkFiles(
    ZEFFileItemSet& checkedDirectories, std::vector<zef::Ref<ZEFFileItem>>& filesToAdd)
{
    if (!_filesToIterate)
        return !isCancelled();
    filesToAdd.reserve(_filesToIterate->count());
    for (const auto& file : *_filesToIterate) {
        if (isCancelled())
            return false;
        if (_directoryFilter && _directoryFilter->shouldIncludeFile(file.get()))
            recursivelyLoadFilesForDirectory(
                _directoryFilter->trueDirectoryObjectForFile(file.get()), 1, checkedDirectories);
        if (!_fileFilter || _fileFilter->shouldIncludeFile(file.get()))
            filesToAdd.push_back(file);
    }
    return !isCancelled();
}

// Returns false if the operation was cancelled.
bool ZEFFileLoadOperation::addFiles(std::vector<zef::Ref<ZEFFileItem>> files)
{
    const auto present = foundAmong(files);
    for (auto& file : files) {
        if (present->insert(file)) {
            std::lock_guard lock(*loadingArrayLock());
            loadingArray()->addObject(std::move(file));
        }
        if (isCancelled())
            return false;
    }
    return true;
}

// Those of `files` that the walk has found; one pass over what may be very much.
zef::Ref<ZEFFileItemSet> ZEFFileLoadOperation::foundAmong(
    const std::vector<zef::Ref<ZEFFileItem>>& files) const
{
    const auto wanted = zef::makeRef<ZEFFileItemSet>(files.size());
    for (const auto& file : files)
        wanted->insert(file);
    auto found = zef::makeRef<ZEFFileItemSet>(files.size());
    for (const auto& item : *loadingArray()) {
        if (wanted->contains(item))
            found->insert(item);
    }
    return found;
}

void ZEFFileLoadOperation::recursivelyLoadFilesForDirectory(
    zef::Ref<ZEFFileItem> directory, std::ptrdiff_t level, ZEFFileItemSet& checkedDirectories)
{
    std::ignore = Listing(*this, &checkedDirectories).run(std::move(directory), level);
}

std::vector<ZEFFileLoadOperation::Sighting> ZEFFileLoadOperation::takeSightings()
{
    return std::exchange(_sightings, {});
}

std::vector<ZEFFileLoadOperation::Failure> ZEFFileLoadOperation::takeFailures()
{
    return std::exchange(_failures, {});
}

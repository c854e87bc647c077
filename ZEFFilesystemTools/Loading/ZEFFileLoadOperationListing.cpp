// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Loading/ZEFFileLoadBatch.h"
#include "ZEFFilesystemTools/Loading/ZEFFileLoadListing.h"
#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include <iterator>
#include <mutex>
#include <utility>

namespace {

using Result = zef::FileError;

// How many folders above the one that is being read stay open. Many loads may run at once, and a
// process has few descriptors.
constexpr std::size_t openLevels = 6;

constexpr std::ptrdiff_t noDepthLimit = -1;

// The basic filters ask nothing of the disk.
bool looksAtFiles(const ZEFFileFilter* filter)
{
    return filter && &filter->objectClass() != &ZEFFileFilter::classObject
        && &filter->objectClass() != &ZEFDirectoryFilter::classObject;
}

} // namespace

// One folder between its opening and its end.
struct ZEFFileLoadOperation::Listing::Level {
    zef::Ref<ZEFFileItem> folder;
    std::ptrdiff_t number = 0;
    zef::FileURL url;
    std::unique_ptr<zef::CatalogIterator> iterator;
    std::unique_ptr<Batch> batch;
    std::size_t count = 0;
    std::size_t index = 0;
    /// With which the batch was read.
    zef::FileError result = Result::none;
    /// The entry at `index` has its item, and all that is below it was listed.
    bool hasDescended = false;
};

ZEFFileLoadOperation::Listing::Listing(
    ZEFFileLoadOperation& operation, ZEFFileItemSet* checkedDirectories)
    : _operation(operation)
    , _checkedDirectories(checkedDirectories)
{
}

ZEFFileLoadOperation::Listing::~Listing() = default;

zef::FileError ZEFFileLoadOperation::Listing::run(
    zef::Ref<ZEFFileItem> folder, std::ptrdiff_t level)
{
    if (_checkedDirectories && !mayEnter(folder, level))
        return Result::none;
    _result = enter(std::move(folder), level, nullptr);
    while (!_levels.empty())
        step();
    return _result;
}

bool ZEFFileLoadOperation::Listing::mayEnter(
    const zef::Ref<ZEFFileItem>& folder, std::ptrdiff_t level)
{
    const auto depth = _operation._depth;
    return folder && (depth == noDepthLimit || depth >= level)
        && _checkedDirectories->insert(folder);
}

// `found` is where the folder was just seen as an entry of the level above; null if it has to be
// looked for.
zef::FileError ZEFFileLoadOperation::Listing::enter(
    zef::Ref<ZEFFileItem> folder, std::ptrdiff_t level, const zef::FileURL& found)
{
    auto next = std::make_unique<Level>();
    next->folder = std::move(folder);
    next->number = level;
    const auto result = open(*next, found);
    if (result != Result::none || !next->iterator)
        return result;
    next->iterator->setKnownEntries(_operation._knownEntries);
    next->batch = takeBatch();
    next->batch->setAskedAbout(looksAtFiles(_operation._fileFilter.get())
        || (_checkedDirectories && looksAtFiles(_operation._directoryFilter.get())));
    next->batch->setFolder(next->folder->objectClass(), next->url.asFolder());
    if (_levels.size() >= openLevels)
        _levels[_levels.size() - openLevels]->iterator->suspend();
    _levels.push_back(std::move(next));
    return result;
}

// Leaves the iterator out when the operation is cancelled.
zef::FileError ZEFFileLoadOperation::Listing::open(Level& next, const zef::FileURL& found)
{
    const auto* folder = next.folder.get();
    next.url = found ? found : folder ? folder->ZEF_locate() : nullptr;
    if (_operation.isCancelled())
        return Result::none;
    auto opened = openIterator(next, found);
    if (opened.error() == Result::tooManyOpenFiles && !_levels.empty()) {
        suspendLevels(_levels.size());
        opened = openIterator(next, nullptr);
    }
    const auto error = opened.error();
    if (opened) {
        next.iterator = *std::move(opened);
    } else {
        zef::log("ZEFFileLoadOperation encountered error %d opening iterator to get the directory "
                 "contents at %s",
            numberOf(error), next.url ? next.url.absoluteString().c_str() : "(null)");
        noteFailure(next, error);
    }
    return error;
}

zef::CatalogIterator::Opened ZEFFileLoadOperation::Listing::openIterator(
    const Level& next, const zef::FileURL& found)
{
    if (found) {
        auto& above = *_levels.back();
        const auto& entry = above.batch->entry(above.index);
        return above.iterator->openSubfolder(entry, next.url);
    }
    // A folder may have got lost since it was opened; then there are no paths for what is in it.
    if (next.url && _levels.empty() && _operation._openedIterator)
        return std::move(_operation._openedIterator);
    zef::FSRef reference;
    const bool hasReference = next.url && next.folder->ZEF_copyReference(reference);
    return zef::Catalog::shared().openIterator(hasReference ? &reference : nullptr, next.url);
}

void ZEFFileLoadOperation::Listing::suspendLevels(std::size_t count)
{
    for (std::size_t index = 0; index < count; ++index)
        _levels[index]->iterator->suspend();
}

void ZEFFileLoadOperation::Listing::step()
{
    auto& level = *_levels.back();
    if (level.index == level.count) {
        readBatch(level);
        return;
    }
    auto& item = level.batch->slots()[level.index];
    if (!level.hasDescended) {
        const auto url = level.batch->fillSlot(level.index);
        level.hasDescended = true;
        // At once, before the rest of the batch.
        if (item && _checkedDirectories && descend(level, url))
            return;
    }
    if (item && _operation._fileFilter && !_operation._fileFilter->shouldIncludeFile(item.get()))
        item = nullptr;
    level.hasDescended = false;
    ++level.index;
}

// Delivers the batch that is done, and reads the next one.
void ZEFFileLoadOperation::Listing::readBatch(Level& level)
{
    if (level.count)
        append(*level.batch);
    if (level.result == Result::noMoreItems) {
        leave(Result::none);
        return;
    }
    level.count = 0;
    level.index = 0;
    level.result = level.iterator->next(level.batch->entries(), level.count);
    if (level.result == Result::tooManyOpenFiles && _levels.size() > 1) {
        suspendLevels(_levels.size() - 1);
        level.result = level.iterator->next(level.batch->entries(), level.count);
    }
    const bool isRead = level.result == Result::none || level.result == Result::noMoreItems;
    if (isRead && !_operation.isCancelled())
        return;
    if (!isRead && !_operation.isCancelled()) {
        if (level.result != Result::accessDenied)
            zef::log(
                "ZEFFileLoadOperation had error %d looping FSGetCatalogInfoBulk for directory %s",
                numberOf(level.result), level.url.absoluteString().c_str());
        noteFailure(level, level.result);
    }
    leave(level.result);
}

void ZEFFileLoadOperation::Listing::leave(zef::FileError result)
{
    const auto left = std::move(_levels.back());
    _levels.pop_back();
    _freeBatches.push_back(std::move(left->batch));
    // The folder above may have been moved, so that its path leads nowhere.
    if (!_levels.empty())
        _levels.back()->iterator->resumeFrom(*left->iterator);
    if (_levels.empty())
        _result = result;
}

// Returns true if there is one more level now.
bool ZEFFileLoadOperation::Listing::descend(Level& level, const zef::FileURL& found)
{
    const auto item = level.batch->slots()[level.index];
    const zef::Ref<ZEFDirectoryFilter> filter = _operation._directoryFilter;
    if (!filter || !filter->shouldIncludeFile(item.get()))
        return false;
    auto folder = filter->trueDirectoryObjectForFile(item.get());
    const auto levelBelow = level.number + 1;
    if (!mayEnter(folder, levelBelow))
        return false;
    // An item that was made before may know its folder by another path.
    const bool isHere = folder == item && item->ZEF_hasPathOf(found);
    const auto count = _levels.size();
    std::ignore = enter(std::move(folder), levelBelow, isHere ? found : nullptr);
    return _levels.size() > count;
}

void ZEFFileLoadOperation::Listing::append(Batch& batch)
{
    auto& sightings = batch.sightings();
    std::lock_guard lock(*_operation.loadingArrayLock());
    for (auto& item : batch.slots()) {
        if (item)
            _operation.loadingArray()->addObject(std::move(item));
    }
    if (!_checkedDirectories)
        std::move(sightings.begin(), sightings.end(), std::back_inserter(_operation._sightings));
    sightings.clear();
}

void ZEFFileLoadOperation::Listing::noteFailure(const Level& level, zef::FileError error)
{
    std::lock_guard lock(*_operation.loadingArrayLock());
    _operation._failures.push_back({ level.folder, error });
}

std::unique_ptr<ZEFFileLoadOperation::Batch> ZEFFileLoadOperation::Listing::takeBatch()
{
    if (_freeBatches.empty())
        return std::make_unique<Batch>();
    auto batch = std::move(_freeBatches.back());
    _freeBatches.pop_back();
    return batch;
}

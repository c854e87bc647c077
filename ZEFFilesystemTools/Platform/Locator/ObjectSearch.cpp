// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/ObjectSearch.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/PathSpelling.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string_view>

// The steps go from cheap to dear, and the first that yields a verified place ends the search:
//
// 1. the last known place, one look;
// 2. the descriptor that the locator holds of the object: the kernel says where it is now, or that
//    its last name is gone;
// 3. the object's handle, where the process may open it;
// 4. the folder that the reference names, found by this same search with one level more, and the
//    folder of the last known place;
// 5. the folders that others retain, within a budget.
//
// Steps 4 and 5 read folders through the shared cache of indexes and look at every name that has
// the object's number. A folder is read again while the object is on the move or the index may have
// missed a change: whoever asks for an object that exists must not be told that it is gone.

namespace zef {
namespace {

constexpr unsigned deepestSearch = 64;
constexpr unsigned mostQuestions = 16;
constexpr unsigned mostReadings = 16;
constexpr std::size_t mostOtherFolders = 32;
constexpr std::size_t mostOtherEntries = 200000;
constexpr auto allEntries = std::numeric_limits<std::size_t>::max();

// What the kernel adds to the path of an object that has lost that name.
constexpr std::string_view lostNameMark = " (deleted)";

enum class Sight {
    sameObject,
    /// Another object that has the number now.
    successor,
    /// Anything else, or nothing.
    other,
    notAllowed,
};

Sight lookAt(const FileURL& url, const FSRef& ref)
{
    PathBytes path;
    Stat stat;
    if (!url.fileSystemRepresentation(path))
        return Sight::other;
    const int error = FileSystem::shared().statLink(path.text(), stat);
    if (error)
        return error == EACCES ? Sight::notAllowed : Sight::other;
    if (sameObject(stat, ref, path.text()))
        return Sight::sameObject;
    return ref.hasNumbersOf(stat) ? Sight::successor : Sight::other;
}

bool leadsTo(const FileURL& url, const FSRef& ref)
{
    return url && lookAt(url, ref) == Sight::sameObject;
}

URLKind kindOf(const FSRef& ref)
{
    return ref.isFolder() ? URLKind::folder : URLKind::file;
}

// With a slash at the end, so that a link to a folder is followed.
bool statFolder(const FileURL& folder, Stat& stat)
{
    PathBytes path;
    return folder.fileSystemRepresentation(path) && path.append("/")
        && FileSystem::shared().statLink(path.text(), stat) == 0 && stat.isFolder();
}

} // namespace

ObjectSearch::ObjectSearch(const Means& means)
    : _means(means)
    , _secondsAtStart(Clock::shared().monotonicSeconds())
{
}

FileURL ObjectSearch::find(FSRef ref, const FileURL& lastKnown)
{
    if (ref.isEmpty() || _depth == deepestSearch)
        return nullptr;
    ++_depth;
    // Whoever asks with the reference alone may ask for a folder that others use.
    const auto known = !lastKnown && ref.isFolder()
        ? _means.tables.findFolder(ObjectNumbers::of(ref))
        : std::nullopt;
    auto place = search(ref, known ? known->url : lastKnown);
    --_depth;
    if (place && ref.isFolder())
        _means.tables.learnFolder(ref, place);
    return place;
}

FileURL ObjectSearch::search(FSRef& ref, const FileURL& lastKnown)
{
    // Nearly always the object is where it was, and this is the cheapest question.
    if (leadsTo(lastKnown, ref))
        return lastKnown.withKind(kindOf(ref));
    auto answer = askDescriptor(ref, lastKnown);
    if (!answer)
        answer = openHandle(ref, lastKnown);
    if (answer)
        return *std::move(answer);
    auto place = lookInOwnFolder(ref, lastKnown);
    if (!place)
        place = lookInOtherFolders(ref);
    return place ? spell(ref, place, lastKnown) : nullptr;
}

ObjectSearch::Answer ObjectSearch::askDescriptor(FSRef& ref, const FileURL& lastKnown)
{
    const auto held = _means.tables.findHeld(ref);
    Stat stat;
    if (!held || held->descriptor->stat(stat) != 0)
        return std::nullopt;
    if (stat.linkCount == 0) {
        _means.tables.dropHeld(ref);
        return FileURL();
    }
    // What is held knows the object's handle, which the reference asked with may lack.
    ref = held->ref;
    auto place = verifiedPlace(ref, *held->descriptor, lastKnown);
    return place ? Answer(std::move(place)) : std::nullopt;
}

ObjectSearch::Answer ObjectSearch::openHandle(const FSRef& ref, const FileURL& lastKnown)
{
    auto opened = _means.opener.open(ref, lastKnown);
    if (!opened.object)
        return opened.outcome == HandleOpener::Outcome::gone ? Answer(nullptr) : std::nullopt;
    // The path of a file is known only while the kernel remembers its name by itself.
    auto place = verifiedPlace(ref, *opened.object, lastKnown);
    if (!place)
        return std::nullopt;
    holdAgain(ref, std::move(opened.object));
    return place;
}

// A folder that somebody retains and that had to make room meanwhile. The uses of other objects are
// not known any more once they aren't held.
void ObjectSearch::holdAgain(const FSRef& ref, Ref<ObjectDescriptor> object)
{
    if (!ref.isFolder() || !_means.tables.isKnownFolder(ref) || !_means.tables.hasRoom(true))
        return;
    Stat stat;
    std::uint64_t mountID = 0;
    if (object->stat(stat, mountID) == 0 && _means.policy.mayHold(*object, stat.device, mountID))
        _means.tables.holdKnownFolder({ ref, std::move(object), mountID });
}

// Asks again while the object is on the move: whoever looks for it must not lose it to that.
FileURL ObjectSearch::verifiedPlace(
    const FSRef& ref, const ObjectDescriptor& object, const FileURL& lastKnown) const
{
    FileURL before;
    for (unsigned question = 0; question < mostQuestions; ++question) {
        PathBytes path;
        if (!object.currentPath(path))
            return nullptr;
        const auto place = FileURL::fromPath(path.view(), kindOf(ref));
        const auto sight = lookAt(place, ref);
        const bool hasLostName = path.view().ends_with(lostNameMark);
        if (sight == Sight::sameObject || (sight == Sight::notAllowed && !hasLostName))
            return spell(ref, place, lastKnown);
        if (place == before)
            return nullptr;
        before = place;
    }
    return nullptr;
}

FileURL ObjectSearch::lookInOwnFolder(const FSRef& ref, const FileURL& lastKnown)
{
    const auto lastFolder = lastKnown ? lastKnown.deletingLastPathComponent() : nullptr;
    Stat stat;
    const bool isThere = lastFolder && statFolder(lastFolder, stat);
    const bool isOwnFolder = isThere && (!ref.parentInode() || ref.parentInode() == stat.inode);
    if (!isOwnFolder) {
        if (auto place = lookInFolder(ref, findOwnFolder(ref)))
            return place;
    }
    // The object may have come there after its folder was recorded.
    return isThere ? lookInFolder(ref, lastFolder) : nullptr;
}

FileURL ObjectSearch::findOwnFolder(const FSRef& ref)
{
    const ObjectNumbers numbers{ ref.parentInode(), ref.device() };
    if (!numbers.inode || numbers == ObjectNumbers::of(ref))
        return nullptr;
    const auto folder = _means.tables.findFolder(numbers);
    return folder ? find(folder->ref, folder->url) : nullptr;
}

FileURL ObjectSearch::lookInOtherFolders(const FSRef& ref)
{
    // Not again for each of the folders that are looked into.
    if (_budget)
        return nullptr;
    _budget = SearchBudget{ .folders = mostOtherFolders, .entries = mostOtherEntries };
    FileURL place;
    for (const auto& folder : _means.tables.recentFolders(ref.device(), mostOtherFolders)) {
        if (_budget->isUsedUp())
            break;
        place = lookInFolder(ref, find(folder.ref, folder.url));
        if (place)
            break;
    }
    _budget.reset();
    return place;
}

FileURL ObjectSearch::lookInFolder(const FSRef& ref, const FileURL& folder)
{
    if (!folder)
        return nullptr;
    const auto limit = _budget ? _budget->entries : allEntries;
    auto index = _means.indexes.index(folder, limit);
    if (index && _budget)
        _budget->pay(index->count());
    for (unsigned reading = 1; index; ++reading) {
        auto look = lookInIndexedFolder(ref, folder, *index);
        const bool mayBeThere = look.isOnTheMove
            || index->mayHaveMissedAChangeBefore(_secondsAtStart);
        if (look.place || reading == mostReadings || !mayBeThere)
            return std::move(look.place);
        index = _means.indexes.index(folder, limit, FolderIndexCache::Freshness::readAgain);
    }
    return nullptr;
}

ObjectSearch::FolderLook ObjectSearch::lookInIndexedFolder(
    const FSRef& ref, const FileURL& folder, const FolderIndex& index)
{
    FolderLook look;
    for (std::size_t position = 0;; ++position) {
        const auto name = index.name(ref.inode(), position);
        if (name.empty())
            return look;
        auto place = folder.appendingPathComponent(name, kindOf(ref));
        const auto sight = lookAt(place, ref);
        if (sight == Sight::sameObject)
            return { std::move(place) };
        look.isOnTheMove |= sight == Sight::other;
    }
}

FileURL ObjectSearch::spell(const FSRef& ref, const FileURL& found, const FileURL& lastKnown) const
{
    PathSpelling spelling(lastKnown, [this](const Stat& stat) -> FileURL {
        const auto folder = _means.tables.findFolder(ObjectNumbers::of(stat));
        const bool isThere = folder && leadsTo(folder->url, FSRef(stat));
        return isThere ? folder->url.withKind(URLKind::folder) : nullptr;
    });
    auto spelled = spelling.spell(found);
    if (spelled == found)
        return found;
    const auto sight = lookAt(spelled, ref);
    return sight == Sight::sameObject || sight == Sight::notAllowed ? spelled : found;
}

} // namespace zef

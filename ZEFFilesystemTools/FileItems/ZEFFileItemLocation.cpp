// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include <cmath>
#include <mutex>

zef::FileURL ZEFFileItem::currentURL()
{
    if (!isValid()) {
        setLocation(nullptr);
        return nullptr;
    }
    makeOwnPath();
    zef::PathBytes path;
    if (_pathInfo.path.fileSystemRepresentation(path)
        && zef::FileSystem::shared().exists(path.text()))
        return _pathURL;

    _pathInfo.path = nullptr;
    auto found = resolveReference();
    if (!found) {
        becomeLost();
        return nullptr;
    }
    if (found != _pathURL)
        setLocation(found);
    return _pathURL;
}

std::optional<std::string> ZEFFileItem::currentPath()
{
    const auto now = currentURL();
    return now ? std::optional(now.path()) : std::nullopt;
}

zef::PathBuffer ZEFFileItem::currentFilesystemRepresentation()
{
    _pathInfo.path = currentURL();
    zef::PathBytes path;
    return _pathInfo.path.fileSystemRepresentation(path) ? zef::makePathBuffer(path.view())
                                                         : nullptr;
}

std::optional<zef::Date> ZEFFileItem::modificationDate()
{
    if (std::isnan(_modDate))
        _modDate = _pathInfo.modificationTime;
    return zef::Date::withSecondsSince1970(_modDate);
}

std::optional<zef::Date> ZEFFileItem::currentModificationDate()
{
    if (!isValid())
        return std::nullopt;
    zef::Stat stat;
    if (!_pathInfo.path)
        zef::log("Error, tried to statmoddate a null value");
    else if (isSeenAt(_pathInfo.path, nullptr, stat) && !_pathInfo.hasTimeStampsOf(stat)) {
        _pathInfo.setTimeStamps(stat);
        _modDate = _pathInfo.modificationTime;
    }
    return std::isnan(_modDate) ? std::nullopt
                                : std::optional(zef::Date::withSecondsSince1970(_modDate));
}

void ZEFFileItem::ZEF_seenAtURL(const zef::FileURL& url)
{
    zef::Stat stat;
    if (isValid() && !isSeenAt(_pathURL, nullptr, stat) && isSeenAt(url, nullptr, stat))
        setLocation(url);
}

bool ZEFFileItem::isSeenAt(
    const zef::FileURL& url, const zef::PinnedFolder* folder, zef::Stat& stat) const
{
    zef::PathBytes path;
    if (!url.fileSystemRepresentation(path))
        return false;
    auto& files = zef::FileSystem::shared();
    const int error = folder ? files.statEntry(*folder, path.text(), stat)
                             : files.statLink(path.text(), stat);
    return !error && ZEF_isSameObject(stat, url);
}

bool ZEFFileItem::ZEF_isSameObject(const zef::Stat& stat, const zef::FileURL& where) const
{
    if (stat.inode != _iNode || stat.device != _deviceNumber)
        return false;
    const auto recorded = identity();
    if (!stat.hasBirthTime || !recorded.hasBirthTime() || stat.birthTime == recorded.birthTime())
        return true;
    zef::PathBytes path;
    return where.fileSystemRepresentation(path) && zef::sameObject(stat, recorded, path.text());
}

bool ZEFFileItem::ZEF_isAnotherObject(const ZEFFileItem& other) const
{
    const auto mine = identity();
    const auto others = other.identity();
    return mine.hasBirthTime() && others.hasBirthTime() && mine.birthTime() != others.birthTime()
        && !(mine.hasHandle() && mine.handle() == others.handle());
}

void ZEFFileItem::ZEF_keepReference()
{
    if (!refValid() || _state.has(referenceKeptState))
        return;
    auto reference = referenceCopy();
    zef::Locator::shared().retain(reference, url());
    {
        std::lock_guard lock(_locationLock);
        _fsRef = reference;
    }
    // Meanwhile another thread may have done the same, or the item's own have found the file lost.
    if (_state.testAndSet(referenceKeptState))
        zef::Locator::shared().release(reference);
    else if (!isValid())
        giveUpReference();
}

bool ZEFFileItem::ZEF_copyReference(zef::FSRef& reference) const
{
    reference = referenceCopy();
    return refValid() && isValid();
}

zef::FileURL ZEFFileItem::ZEF_locate() const
{
    auto place = url();
    zef::PathBytes path;
    zef::FSRef reference;
    if (!isValid() || !place)
        return nullptr;
    if (place.fileSystemRepresentation(path) && zef::FileSystem::shared().exists(path.text()))
        return place;
    return ZEF_copyReference(reference) ? zef::Locator::shared().locate(reference, place)
                                        : zef::FileURL();
}

zef::FSRef ZEFFileItem::referenceCopy() const
{
    std::lock_guard lock(_locationLock);
    return _fsRef;
}

// A host may have handed in any reference; only one with this item's own numbers says more of it.
zef::FSRef ZEFFileItem::identity() const
{
    zef::Stat numbers;
    numbers.device = _deviceNumber;
    numbers.inode = _iNode;
    const auto reference = referenceCopy();
    return reference.hasNumbersOf(numbers) ? reference : zef::FSRef(numbers);
}

zef::FileURL ZEFFileItem::resolveReference()
{
    return refValid() ? zef::Locator::shared().locate(referenceCopy(), _pathURL) : zef::FileURL();
}

void ZEFFileItem::setLocation(const zef::FileURL& url)
{
    {
        std::lock_guard lock(_locationLock);
        _pathURL = url;
    }
    _path.reset();
    // Left null: whoever needs it makes it anew from the URL.
    _pathInfo.path = nullptr;
}

void ZEFFileItem::becomeLost()
{
    _state.clear(validState);
    giveUpReference();
    _state.clear(refValidState);
    setLocation(nullptr);
}

void ZEFFileItem::giveUpReference()
{
    if (_state.testAndClear(referenceKeptState))
        zef::Locator::shared().release(referenceCopy());
}

void ZEFFileItem::makeOwnPath()
{
    if (!_pathInfo.path && isValid())
        _pathInfo.path = _pathURL;
}

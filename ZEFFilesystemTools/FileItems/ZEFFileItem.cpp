// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileNumbers.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <mutex>

const ZEFFileItemClass ZEFFileItem::classObject(
    "ZEFFileItem", &ZEFObject::classObject, ZEFFileItemClass::initializer<ZEFFileItem>);

ZEFFileItem::ZEFFileItem(const zef::FileURL& url, const zef::FSRef* fsRef,
    const zef::FileURL& pathRep, const zef::Stat* statInfo)
    : _pathURL(url)
{
    _pathInfo.observer = this;
    _pathInfo.lastEventTime = zef::Clock::shared().now().secondsSinceReferenceDate();
    _pathInfo.path = pathRep ? pathRep : url;

    zef::Stat ownStat;
    if (!statInfo) {
        zef::PathBytes path;
        if (_pathInfo.path.fileSystemRepresentation(path)
            && zef::FileSystem::shared().statLink(path.text(), ownStat) == 0)
            statInfo = &ownStat;
    }
    if (statInfo)
        takeStat(*statInfo);
    takeReference(fsRef, statInfo);
}

ZEFFileItem::~ZEFFileItem() = default;

void ZEFFileItem::takeStat(const zef::Stat& stat)
{
    _pathInfo.setTimeStamps(stat);
    if (stat.isBasicDirectory())
        _marks |= basicDirectoryMark;
    if (stat.isSymlink())
        _marks |= symlinkMark;
    _deviceNumber = stat.device;
    _iNode = stat.inode;
    _state.set(validState);
}

void ZEFFileItem::takeReference(const zef::FSRef* given, const zef::Stat* stat)
{
    if (given)
        _fsRef = *given;
    else if (!stat || !zef::Locator::shared().makeRef(_pathURL, *stat, _fsRef))
        return;
    _state.set(refValidState);
}

void ZEFFileItem::dealloc() noexcept
{
    endKQueue();
    if (auto* container = ZEF_container())
        container->removeDying(this);
    giveUpReference();
    ZEFObject::dealloc();
}

std::size_t ZEFFileItem::hash() const
{
    return zef::hashOfFile(_iNode, _deviceNumber);
}

std::uint64_t ZEFFileItem::fileiNodeHash() const
{
    return zef::registryKeyOfInode(_iNode);
}

bool ZEFFileItem::isEqual(const ZEFObject* other) const
{
    if (other == this)
        return true;
    const auto* item = zef::downcast<ZEFFileItem>(other);
    return item && item->_iNode == _iNode && item->_deviceNumber == _deviceNumber
        && item->isKindOfClass(objectClass());
}

zef::Ref<ZEFObject> ZEFFileItem::copy()
{
    return this;
}

zef::FileURL ZEFFileItem::url() const
{
    std::lock_guard lock(_locationLock);
    return _pathURL;
}

bool ZEFFileItem::ZEF_hasPathOf(const zef::FileURL& url) const
{
    std::lock_guard lock(_locationLock);
    return _pathURL.hasPathOf(url);
}

const zef::FSRef* ZEFFileItem::fsRef() const
{
    return refValid() && isValid() ? &_fsRef : nullptr;
}

const std::string* ZEFFileItem::path()
{
    if (!_path && _pathURL && isValid())
        _path = std::make_unique<std::string>(_pathURL.path());
    return _path.get();
}

zef::PathBuffer ZEFFileItem::filesystemRepresentation()
{
    if (!isValid())
        return nullptr;
    makeOwnPath();
    zef::PathBytes path;
    return _pathInfo.path.fileSystemRepresentation(path) ? zef::makePathBuffer(path.view())
                                                         : nullptr;
}

std::string ZEFFileItem::description() const
{
    const auto place = url();
    return ZEFObject::description() + ", URL: " + (place ? place.absoluteString() : "(null)")
        + ", hash: " + std::to_string(static_cast<std::int32_t>(hash())) + ", isBasicDir: "
        + std::to_string(isBasicDirectory()) + ", refValid: " + std::to_string(refValid())
        + ", isSymlink: " + std::to_string(isSymlink());
}

void ZEFFileItem::ZEF_setContainer(ZEFFileTable* table)
{
    // Whoever sees it while the item dies frees the item, and must see all that was done to it
    // before.
    _container.store(table, std::memory_order_release);
}

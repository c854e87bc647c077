// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItemClass.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileNumbers.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

namespace {

// How often a file may change places while it is asked for.
constexpr int mostLooks = 8;

} // namespace

// One call of the factory. What it lets go of, it lets go of after the registry is unlocked.
class ZEF_INTERNAL ZEFFileItemClass::Request {
public:
    Request(const ZEFFileItemClass& fileClass, const zef::FileURL& url, const zef::FSRef* ref,
        const zef::Stat& stat)
        : _class(fileClass)
        , _url(url)
        , _ref(ref)
        , _stat(stat)
        , _key(zef::registryKeyOfInode(stat.inode))
    {
    }

    zef::Ref<ZEFFileItem> item()
    {
        zef::Ref<ZEFFileItem> result;
        {
            ZEFFileRegistry::Guard guard;
            if (!guard.isLocked())
                return nullptr;
            result = registeredItem();
        }
        if (_replaced && !_isOutdated)
            tellReplacement();
        return result;
    }

    /// Whether no item could be given because the file has changed places since it was looked
    /// at.
    bool isOutdated() const { return _isOutdated; }

private:
    zef::Ref<ZEFFileItem> registeredItem()
    {
        auto* table = ZEFFileRegistry::table(_stat.device);
        if (table) {
            if (auto found = usableItem(*table))
                return found;
            if (_isOutdated)
                return nullptr;
            if (auto made = makeItem(*table))
                return made;
        }
        // Also reached when an instance could not be made: the device then begins anew, and the
        // registry has forgotten every item that it knew there.
        return makeItem(ZEFFileRegistry::replaceTable(_stat.device));
    }

    zef::Ref<ZEFFileItem> usableItem(ZEFFileTable& table)
    {
        auto found = table.retainedItem(_key);
        if (!found)
            return nullptr;
        const bool isOfThisFile = found->ZEF_isSameObject(_stat, _url);
        if (isOfThisFile && found->isValid())
            return found;
        _replaced = std::move(found);
        // The look may be so old that the item is the one of the file that has the number now.
        _isOutdated = !isStillThere();
        if (_isOutdated)
            return nullptr;
        // The number of a deleted file was given to this one: the old item must not, when it dies,
        // take out the entry of a file that is not its own.
        if (isOfThisFile)
            table.remove(_key);
        else
            table.detach(_replaced.get());
        return nullptr;
    }

    bool isStillThere() const
    {
        zef::PathBytes path;
        zef::Stat now;
        return _url.fileSystemRepresentation(path)
            && zef::FileSystem::shared().statLink(path.text(), now) == 0 && now.inode == _stat.inode
            && now.device == _stat.device && now.hasBirthTime == _stat.hasBirthTime
            && now.birthTime == _stat.birthTime;
    }

    zef::Ref<ZEFFileItem> makeItem(ZEFFileTable& table)
    {
        const bool needsSlash = _stat.isBasicDirectory() && !_url.hasDirectoryPath();
        const auto url = needsSlash ? _url.withKind(zef::URLKind::folder) : _url;
        auto made = _class._initWithURL(url, needsSlash ? nullptr : _ref, url, &_stat);
        if (made)
            table.insert(_key, made.get());
        return made;
    }

    void tellReplacement() const
    {
        zef::log("Error while getting file object %s for url %s, will attempt to create a new one.",
            _replaced->description().c_str(), _url.absoluteString().c_str());
    }

    const ZEFFileItemClass& _class;
    const zef::FileURL& _url;
    const zef::FSRef* _ref;
    const zef::Stat& _stat;
    std::uint64_t _key;
    zef::Ref<ZEFFileItem> _replaced;
    bool _isOutdated = false;
};

zef::Ref<ZEFFileItem> ZEFFileItemClass::newFileItemForURLFsRef(
    const zef::FileURL& url, const zef::FSRef* ref) const
{
    zef::PathBytes path;
    if (!url.fileSystemRepresentation(path))
        return nullptr;
    zef::Stat stat;
    for (int look = 0; look < mostLooks; ++look) {
        if (zef::FileSystem::shared().statLink(path.text(), stat) != 0)
            return nullptr;
        Request request(*this, url, ref, stat);
        auto item = request.item();
        if (item)
            item->ZEF_keepReference();
        if (!request.isOutdated())
            return item;
    }
    return nullptr;
}

zef::Ref<ZEFFileItem> ZEFFileItemClass::newFileItemForURL(const zef::FileURL& url) const
{
    return newFileItemForURLFsRef(url, nullptr);
}

zef::Ref<ZEFFileItem> ZEFFileItemClass::newFileItemForPath(std::string_view path) const
{
    return newFileItemForURL(zef::FileURL::fromPath(path, zef::URLKind::folder));
}

zef::Ref<ZEFFileItem> ZEFFileItemClass::newFileItemForPath(std::nullptr_t) const
{
    return nullptr;
}

zef::Ref<ZEFFileItem> ZEFFileItemClass::newFileItemForFSRef(const zef::FSRef* ref) const
{
    if (!ref)
        return nullptr;
    auto& locator = zef::Locator::shared();
    auto place = locator.locate(*ref, nullptr);
    // Without means to open a file by its reference the item that there is knows where to look.
    const auto known = place ? nullptr : ZEFFileRegistry::item(ref->device(), ref->inode());
    if (known)
        place = locator.locate(*ref, known->url());
    return newFileItemForURLFsRef(place, ref);
}

zef::Ref<ZEFFileItem> ZEFFileItemClass::ZEF_newFileItemForEntry(
    const zef::FileURL& url, const zef::FSRef& ref, const zef::Stat& stat) const
{
    return url ? Request(*this, url, &ref, stat).item() : nullptr;
}

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoDetails.h"
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

const char* const ZEFArchiveIsAliasKey = "ZEFArchiveIsAliasKey";

void ZEFBasicInfoFileItem::updateForEvent(const ZEFChangeRecord* record)
{
    switch (record ? record->event() : ZEFFileEvent::removed) {
    case ZEFFileEvent::moved:
    case ZEFFileEvent::renamed:
    case ZEFFileEvent::appeared:
        forget(true);
        break;
    case ZEFFileEvent::updated:
        if (isAlias())
            forget(false);
        break;
    case ZEFFileEvent::removed:
    case ZEFFileEvent::movedInParent:
        break;
    }
    ZEFFileItem::updateForEvent(record);
}

// The target in any case; what the file is itself only where its name may have changed. Whether it
// is an alias, and what the target was found to be, stays until `resetAliasStatus`.
void ZEFBasicInfoFileItem::forget(bool withNamesAndTypes)
{
    zef::Ref<ZEFFileItem> file; // let go of with nothing locked: its death may call out
    std::lock_guard lock(_answersLock);
    ++_generation;
    if (_details) {
        file = std::move(_details->resolvedFile);
        _details->isOwnTarget = false;
        _details->resolvedPath.reset();
        _details->resolvedURL.reset();
    }
    if (_details && withNamesAndTypes) {
        _details->displayName.reset();
        _details->fileName.reset();
        _details->uti.reset();
        _details->resolvedUTI.reset();
    }
    if (isBasicDirectory()) {
        _isApplication.forget();
        _isDirectory.forget();
        _isPackage.forget();
    }
    _isInvisible.forget();
}

void ZEFBasicInfoFileItem::loadDataIntoArchive(ZEFArchiveDictionary* dictionary)
{
    ZEFFileItem::loadDataIntoArchive(dictionary);
    dictionary->setBooleanForKey(!isRealFile(), ZEFArchiveIsAliasKey);
}

// An alias is found again by its path: the reference would lead to it too, but people who keep an
// alias mean the place where it lies.
zef::Ref<ZEFFileItem> ZEFBasicInfoFileItem::itemForArchiveDictionary(
    const ZEFFileItemClass& receiver, const ZEFArchiveDictionary& dictionary)
{
    if (!dictionary.booleanForKey(ZEFArchiveIsAliasKey))
        return ZEFFileItem::classObject.readArchive(receiver, dictionary);
    const auto* path = dictionary.stringForKey(ZEFArchivePathKey);
    return path ? receiver.newFileItemForPath(*path) : nullptr;
}

std::string ZEFBasicInfoFileItem::description() const
{
    const auto number = [](const ZEFTriState& value) { return std::to_string(value.rawValue()); };
    auto text = ZEFFileItem::description();
    std::lock_guard lock(_answersLock);
    const auto* known = _details.get();
    const auto place = known ? known->resolvedURL.value_or(nullptr) : zef::FileURL();
    text += ", resolved url: " + (place ? place.absoluteString() : "(null)")
        + ", resolvedIsDirectory: " + number(_resolvedIsDirectory)
        + ", isDirectory: " + number(_isDirectory) + ", isPackage: " + number(_isPackage)
        + ", isApplication: " + number(_isApplication) + ", isInvisible: " + number(_isInvisible)
        + ", isSymlink: " + std::to_string(isSymlink())
        + ", UTI: " + (known ? known->uti.value_or("(null)") : "(null)");
    return text;
}

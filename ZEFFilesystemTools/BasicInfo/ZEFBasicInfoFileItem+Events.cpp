// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoDetails.h"
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

const char* const ZEFArchiveIsAliasKey = "ZEFArchiveIsAliasKey";

void ZEFBasicInfoFileItem::updateForEvent(const ZEFChangeRecord* record)
{
    const auto event = record ? record->event() : ZEFFileEvent{};
    switch (event) {
    case ZEFFileEvent::moved:
    case ZEFFileEvent::renamed:
    case ZEFFileEvent::appeared:
        forgetNamesAndTypes();
        forgetTarget();
        forgetKind();
        break;
    case ZEFFileEvent::updated:
        if (isAlias()) {
            forgetTarget();
            forgetKind();
        }
        break;
    case ZEFFileEvent::removed:
    case ZEFFileEvent::movedInParent:
        break;
    }
    ZEFFileItem::updateForEvent(record);
}

void ZEFBasicInfoFileItem::forgetNamesAndTypes()
{
    auto& known = details();
    known.displayName.reset();
    known.fileName.reset();
    known.uti.reset();
    known.resolvedUTI.reset();
}

void ZEFBasicInfoFileItem::forgetTarget()
{
    auto& known = details();
    known.resolvedPath.reset();
    known.resolvedURL = nullptr;
    known.isOwnTarget = false;
    // Last: its death may call out.
    const auto file = std::move(known.resolvedFile);
}

void ZEFBasicInfoFileItem::forgetKind()
{
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
    const auto* known = _details.get();
    const auto text = [](const std::string& value) { return value.empty() ? "(null)" : value; };
    const auto number = [](const ZEFTriState& value) { return std::to_string(value.rawValue()); };
    return ZEFFileItem::description()
        + ", resolved url: " + text(known ? known->resolvedURL.absoluteString() : std::string())
        + ", resolvedIsDirectory: " + number(_resolvedIsDirectory)
        + ", isDirectory: " + number(_isDirectory) + ", isPackage: " + number(_isPackage)
        + ", isApplication: " + number(_isApplication) + ", isInvisible: " + number(_isInvisible)
        + ", isSymlink: " + std::to_string(isSymlink())
        + ", UTI: " + text(known ? known->uti.value_or(std::string()) : std::string());
}

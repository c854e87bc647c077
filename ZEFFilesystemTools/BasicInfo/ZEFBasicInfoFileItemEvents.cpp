// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

const char* const ZEFArchiveIsAliasKey = "ZEFArchiveIsAliasKey";

namespace {

using Answers = ZEFBasicInfoAnswers;

// What follows from the type of a folder.
constexpr std::uint8_t kindFlags = Answers::application | Answers::directory | Answers::package;

} // namespace

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
    // Let go of with nothing locked: its death may call out.
    std::optional<zef::Ref<ZEFFileItem>> file;
    const std::uint8_t flags = Answers::invisible | (isBasicDirectory() ? kindFlags : 0);
    _answers.forget(flags, [&](Answers::Details& details) {
        file.swap(details.resolvedFile);
        details.resolvedPath.reset();
        details.resolvedURL.reset();
        if (!withNamesAndTypes)
            return;
        details.displayName.reset();
        details.fileName.reset();
        details.uti.reset();
        details.resolvedUTI.reset();
    });
}

bool ZEFBasicInfoFileItem::resetAliasStatus()
{
    _answers.forget(kindFlags, [](Answers::Details& details) { details.target.reset(); });
    return true;
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
    const auto number = [&](Answers::Flag flag) {
        const auto known = _answers.known(std::uint8_t{ flag });
        return std::to_string(known ? *known / flag : -1);
    };
    const auto target = _answers.known(&Answers::Details::target);
    const auto place = _answers.known(&Answers::Details::resolvedURL).value_or(nullptr);
    return ZEFFileItem::description()
        + ", resolved url: " + (place ? place.absoluteString() : "(null)")
        + ", resolvedIsDirectory: " + std::to_string(target ? target->isFolder : -1)
        + ", isDirectory: " + number(Answers::directory) + ", isPackage: "
        + number(Answers::package) + ", isApplication: " + number(Answers::application)
        + ", isInvisible: " + number(Answers::invisible)
        + ", isSymlink: " + std::to_string(isSymlink())
        + ", UTI: " + _answers.known(&Answers::Details::uti).value_or("(null)");
}

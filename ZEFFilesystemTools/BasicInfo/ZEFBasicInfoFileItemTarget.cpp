// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"

namespace {

using Target = ZEFBasicInfoAnswers::Target;
using Details = ZEFBasicInfoAnswers::Details;

} // namespace

std::optional<zef::FSRef> ZEFBasicInfoFileItem::resolvedFSRef()
{
    const auto found = target();
    return found ? std::optional(found->ref) : std::nullopt;
}

// The call that finds the target unusable still hands out the reference; later ones yield none.
std::optional<Target> ZEFBasicInfoFileItem::target()
{
    auto found = _answers.ask(&Details::target, [&] { return findTarget(); });
    return found->isUsable || found->isNew ? found : std::nullopt;
}

Target ZEFBasicInfoFileItem::findTarget() const
{
    auto& information = zef::FileInformation::shared();
    Target result;
    result.url = url();
    result.isFolder = isBasicDirectory();
    bool isDangling = false;
    if (isSymlink()) {
        const auto target = information.copyTargetOfURL(url());
        isDangling = !target;
        if (target) {
            result.ref = target->ref;
            result.url = target->url;
        }
    } else if (!ZEF_copyReference(result.ref)) {
        result.ref = {};
    }
    // Only a link that leads nowhere is looked into without a reference of its own.
    if (!isDangling && !refValid())
        return result;
    const auto target = information.resolveAliasFile(result.ref, result.url);
    if (!target)
        return result;
    return { .ref = target->ref,
        .url = target->url,
        .isUsable = true,
        .isFolder = target->isFolder,
        .wasAliased = target->wasAliased };
}

zef::FileURL ZEFBasicInfoFileItem::resolvedURL()
{
    const auto place = _answers.ask(&Details::resolvedURL, [&] {
        if (!isValid())
            return std::optional<zef::FileURL>();
        const auto found = findTargetURL();
        return std::optional(found ? found : url());
    });
    return place.value_or(nullptr);
}

zef::FileURL ZEFBasicInfoFileItem::findTargetURL()
{
    const auto found = target();
    if (!found)
        return nullptr;
    // What was found in this moment need not be looked for again.
    return found->isUsable && found->isNew ? found->url
                                           : zef::Locator::shared().locate(found->ref, found->url);
}

std::optional<std::string> ZEFBasicInfoFileItem::resolvedPath()
{
    return _answers.ask(&Details::resolvedPath, [&] {
        const auto place = resolvedURL();
        return place ? std::optional(place.path()) : std::nullopt;
    });
}

zef::Ref<ZEFFileItem> ZEFBasicInfoFileItem::resolvedFile()
{
    const auto file = _answers.ask(&Details::resolvedFile, [&] {
        if (isRealFile())
            return std::optional(zef::Ref<ZEFFileItem>());
        auto found = objectClass().newFileItemForURL(resolvedURL());
        if (!found)
            return std::optional<zef::Ref<ZEFFileItem>>();
        return std::optional(found == this ? nullptr : std::move(found));
    });
    if (!file)
        return nullptr;
    return *file ? *file : this;
}

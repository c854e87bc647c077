// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoAsking.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

std::optional<zef::FSRef> ZEFBasicInfoFileItem::resolvedFSRef()
{
    const auto resolution = target();
    return resolution ? std::optional(resolution->ref) : std::nullopt;
}

// The call that finds the target unusable still hands out the reference; later ones yield none.
std::optional<ZEFBasicInfoFileItem::Resolution> ZEFBasicInfoFileItem::target()
{
    Asking asking(*this);
    std::optional<Resolution> known;
    const bool isKnown = asking.find([&] {
        if (_resolvedFSRefIsValid.isYes())
            known = Resolution{ .ref = asking.details().resolvedFSRef,
                .url = asking.details().targetURL };
        return _resolvedFSRefIsValid.isKnown();
    });
    if (isKnown)
        return known;
    const auto resolution = resolveTarget();
    asking.keep([&] {
        asking.details().resolvedFSRef = resolution.ref;
        asking.details().targetURL = resolution.url;
        _resolvedFSRefIsValid.set(resolution.isUsable);
        _resolvedIsDirectory.set(resolution.targetIsFolder);
        if (resolution.isUsable)
            _isAlias.set(resolution.wasAliased);
    });
    return resolution;
}

ZEFBasicInfoFileItem::Resolution ZEFBasicInfoFileItem::resolveTarget() const
{
    auto& information = zef::FileInformation::shared();
    Resolution result;
    result.url = url();
    result.targetIsFolder = isBasicDirectory();
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
        .targetIsFolder = target->isFolder,
        .wasAliased = target->wasAliased };
}

zef::FileURL ZEFBasicInfoFileItem::resolvedURL()
{
    const auto place = Asking(*this).know(&ZEFBasicInfoDetails::resolvedURL, [&] {
        if (!isValid())
            return std::optional<zef::FileURL>();
        const auto target = findTarget();
        return std::optional(target ? target : url());
    });
    return place.value_or(nullptr);
}

zef::FileURL ZEFBasicInfoFileItem::findTarget()
{
    const auto resolution = target();
    if (!resolution)
        return nullptr;
    // What was found in this moment need not be looked for again.
    return resolution->isUsable ? resolution->url
                                : zef::Locator::shared().locate(resolution->ref, resolution->url);
}

std::optional<std::string> ZEFBasicInfoFileItem::resolvedPath()
{
    return Asking(*this).know(&ZEFBasicInfoDetails::resolvedPath, [&] {
        const auto place = resolvedURL();
        return place ? std::optional(place.path()) : std::nullopt;
    });
}

zef::Ref<ZEFFileItem> ZEFBasicInfoFileItem::resolvedFile()
{
    Asking asking(*this);
    zef::Ref<ZEFFileItem> file;
    const bool isKnown = asking.find([&] {
        file = asking.details().isOwnTarget ? this : asking.details().resolvedFile;
        return static_cast<bool>(file);
    });
    if (isKnown)
        return file;
    file = isRealFile() ? this : objectClass().newFileItemForURL(resolvedURL());
    asking.keep([&] {
        // An item that owned itself would never die.
        asking.details().isOwnTarget = file.get() == this;
        if (file.get() != this)
            asking.details().resolvedFile = file;
    });
    return file;
}

bool ZEFBasicInfoFileItem::resetAliasStatus()
{
    std::lock_guard lock(_answersLock);
    ++_generation;
    _isDirectory.forget();
    _isPackage.forget();
    _isApplication.forget();
    _resolvedFSRefIsValid.forget();
    _resolvedIsDirectory.forget();
    return true;
}

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoDetails.h"
#include "ZEFFilesystemTools/Platform/Locator.h"

// The call that finds the target unusable still hands out the reference; later ones yield none.
const zef::FSRef* ZEFBasicInfoFileItem::resolvedFSRef()
{
    if (_resolvedFSRefIsValid.isKnown() && !_resolvedFSRefIsValid.isYes())
        return nullptr;
    if (!_resolvedFSRefIsValid.isKnown())
        resolveTarget();
    return &details().resolvedFSRef;
}

void ZEFBasicInfoFileItem::resolveTarget()
{
    auto& information = zef::FileInformation::shared();
    auto& ref = details().resolvedFSRef;
    auto& target = details().targetURL;
    target = url();
    _resolvedIsDirectory.set(isBasicDirectory());
    const bool isDangling = isSymlink() && information.copyTargetOfURL(url(), ref, target) != 0;
    if (!isSymlink() && !ZEF_copyReference(ref))
        ref = {};
    if (!isDangling && !refValid()) {
        _resolvedFSRefIsValid.set(false);
        return;
    }
    bool targetIsFolder = false;
    bool wasAliased = false;
    const auto error = information.resolveAliasFile(ref, target, targetIsFolder, wasAliased);
    _resolvedFSRefIsValid.set(!error);
    if (error)
        return;
    _isAlias.set(wasAliased);
    _resolvedIsDirectory.set(targetIsFolder);
}

const zef::FileURL& ZEFBasicInfoFileItem::resolvedURL()
{
    auto& place = details().resolvedURL;
    if (!place && isValid()) {
        place = findTarget();
        if (!place)
            place = url();
    }
    return place;
}

zef::FileURL ZEFBasicInfoFileItem::findTarget()
{
    const bool isLookedForNow = !_resolvedFSRefIsValid.isKnown();
    const auto* ref = resolvedFSRef();
    // What was found in this moment need not be looked for again.
    if (isLookedForNow && _resolvedFSRefIsValid.isYes())
        return details().targetURL;
    return ref ? zef::Locator::shared().locate(*ref, details().targetURL) : nullptr;
}

const std::string* ZEFBasicInfoFileItem::resolvedPath()
{
    auto& path = details().resolvedPath;
    if (!path) {
        if (const auto& place = resolvedURL())
            path = place.path();
    }
    return path ? &*path : nullptr;
}

ZEFFileItem* ZEFBasicInfoFileItem::resolvedFile()
{
    auto& known = details();
    if (known.isOwnTarget)
        return this;
    if (!known.resolvedFile) {
        known.isOwnTarget = isRealFile();
        auto made = known.isOwnTarget ? nullptr : objectClass().newFileItemForURL(resolvedURL());
        // An item that owned itself would never die.
        known.isOwnTarget |= made.get() == this;
        if (known.isOwnTarget)
            return this;
        known.resolvedFile = std::move(made);
    }
    return known.resolvedFile.get();
}

bool ZEFBasicInfoFileItem::resetAliasStatus()
{
    _isDirectory.forget();
    _isPackage.forget();
    _isApplication.forget();
    _resolvedFSRefIsValid.forget();
    _resolvedIsDirectory.forget();
    return true;
}

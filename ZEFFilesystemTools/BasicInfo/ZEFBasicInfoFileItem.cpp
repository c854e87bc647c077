// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoDetails.h"
#include "ZEFFilesystemTools/Platform/LocalizedString.h"
#include "ZEFFilesystemTools/Platform/Log.h"
#include "ZEFFilesystemTools/Platform/TypeTable.h"

namespace {

zef::FileURL folderURL(std::string_view path)
{
    return zef::FileURL::fromPath(path, zef::URLKind::folder);
}

// Made once; never destroyed, because late threads may still ask.
struct SharedURLs {
    zef::FileURL root = folderURL("/");
    zef::FileURL volumes = folderURL("/Volumes/");
    zef::FileURL net = folderURL("/net/");
    zef::FileURL home = folderURL("/home/");

    static const SharedURLs& shared()
    {
        static const auto& urls = *new SharedURLs;
        return urls;
    }
};

bool conforms(const std::string* type, std::string_view other)
{
    return type && zef::TypeTable::shared().conforms(*type, other);
}

std::string_view extensionOf(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return {};
    const auto extension = name.substr(dot + 1);
    return extension.find(' ') == std::string_view::npos ? extension : std::string_view();
}

const std::string* found(const std::optional<std::string>& text)
{
    return text ? &*text : nullptr;
}

std::string shown(const zef::FileURL& url)
{
    return url ? url.absoluteString() : "(null)";
}

} // namespace

const ZEFFileItemClass ZEFBasicInfoFileItem::classObject("ZEFBasicInfoFileItem",
    &ZEFFileItem::classObject, ZEFFileItemClass::initializer<ZEFBasicInfoFileItem>,
    ZEFBasicInfoFileItem::itemForArchiveDictionary);

ZEFBasicInfoFileItem::ZEFBasicInfoFileItem(const zef::FileURL& url, const zef::FSRef* fsRef,
    const zef::FileURL& pathRep, const zef::Stat* statInfo)
    : ZEFFileItem(url, fsRef, pathRep, statInfo)
{
}

ZEFBasicInfoFileItem::~ZEFBasicInfoFileItem() = default;

ZEFBasicInfoDetails& ZEFBasicInfoFileItem::details()
{
    if (!_details)
        _details = std::make_unique<ZEFBasicInfoDetails>();
    return *_details;
}

const std::string* ZEFBasicInfoFileItem::fileName()
{
    auto& name = details().fileName;
    if (!name && isVolumesDirectory())
        name = zef::localizedString("Computer");
    if (!name) {
        if (const auto place = url())
            name = place.lastPathComponent();
    }
    return found(name);
}

const std::string* ZEFBasicInfoFileItem::displayName()
{
    auto& name = details().displayName;
    if (name)
        return found(name);
    if (auto made = makeDisplayName(); !made.empty()) {
        name = std::move(made);
        return found(name);
    }
    zef::log("Error getting display name for item %s", description().c_str());
    if (const auto* place = path())
        name = zef::FileURL::fromPath(*place, zef::URLKind::file).lastPathComponent();
    return found(name);
}

std::string ZEFBasicInfoFileItem::makeDisplayName()
{
    if (isVolumesDirectory())
        return zef::localizedString("Computer");
    auto& information = zef::FileInformation::shared();
    if (const auto* ref = fsRef())
        return information.copyDisplayName({ *ref, url(), isSymlink() });
    const auto* place = path();
    return place ? information.copyDisplayNameAtPath(*place) : std::string();
}

const std::string* ZEFBasicInfoFileItem::uti()
{
    auto& type = details().uti;
    if (type)
        return found(type);
    std::string made;
    const auto* ref = fsRef();
    const bool isTold = ref
        && zef::FileInformation::shared().copyContentType({ *ref, url(), isSymlink() }, made) == 0
        && !made.empty();
    type = isTold ? std::move(made) : typeByName();
    return found(type);
}

std::string ZEFBasicInfoFileItem::typeByName()
{
    const auto* name = fileName();
    return zef::TypeTable::shared().preferredTypeForExtension(
        name ? extensionOf(*name) : std::string_view(),
        isBasicDirectory() ? zef::type::directory : zef::type::data);
}

const std::string* ZEFBasicInfoFileItem::resolvedUTI()
{
    auto& type = details().resolvedUTI;
    if (!type) {
        auto made = typeOfTarget();
        type = made.empty() ? *uti() : std::move(made);
    }
    return found(type);
}

// Empty where the item's own type is the answer.
std::string ZEFBasicInfoFileItem::typeOfTarget()
{
    std::string type;
    if (isRealFile())
        return type;
    const auto* ref = resolvedFSRef();
    if (!ref)
        return type;
    const auto error = zef::FileInformation::shared().copyContentType(
        { *ref, details().targetURL }, type);
    if (!error)
        return type;
    zef::log("Error %d getting resolved UTI for file %s", error, shown(url()).c_str());
    return {};
}

bool ZEFBasicInfoFileItem::isAlias()
{
    if (!_isAlias.isKnown())
        _isAlias.set(conforms(uti(), zef::type::aliasFile));
    return _isAlias.isYes();
}

bool ZEFBasicInfoFileItem::isRealFile()
{
    return !isAlias() && !isSymlink();
}

bool ZEFBasicInfoFileItem::isDirectory()
{
    if (!_isDirectory.isKnown())
        findKindOfFolder();
    return _isDirectory.isYes();
}

bool ZEFBasicInfoFileItem::isPackage()
{
    if (!_isPackage.isKnown())
        isDirectory();
    return _isPackage.isYes();
}

// A package is never reported as a directory.
void ZEFBasicInfoFileItem::findKindOfFolder()
{
    if (isBasicDirectory())
        return setKindOfFolder(conforms(uti(), zef::type::package));
    if (!isRealFile() && conforms(resolvedUTI(), zef::type::folder))
        return setKindOfFolder(conforms(resolvedUTI(), zef::type::package));
    _isDirectory.set(false);
    _isPackage.set(false);
}

void ZEFBasicInfoFileItem::setKindOfFolder(bool isPackage)
{
    _isPackage.set(isPackage);
    _isDirectory.set(!isPackage);
}

bool ZEFBasicInfoFileItem::isApplication()
{
    if (!_isApplication.isKnown())
        _isApplication.set(conforms(resolvedUTI(), zef::type::application));
    return _isApplication.isYes();
}

bool ZEFBasicInfoFileItem::isRootDirectory()
{
    if (!_isRootDirectory.isKnown())
        _isRootDirectory.set(url() == SharedURLs::shared().root);
    return _isRootDirectory.isYes();
}

bool ZEFBasicInfoFileItem::isVolumesDirectory()
{
    if (!_isVolumesDirectory.isKnown())
        _isVolumesDirectory.set(url() == SharedURLs::shared().volumes);
    return _isVolumesDirectory.isYes();
}

bool ZEFBasicInfoFileItem::isInvisible()
{
    if (!_isInvisible.isKnown())
        _isInvisible.set(computeInvisibility());
    return _isInvisible.isYes();
}

// A file that can't be asked about is visible when it has a reference, and invisible without one.
bool ZEFBasicInfoFileItem::computeInvisibility()
{
    const auto place = url();
    if (place == SharedURLs::shared().net || place == SharedURLs::shared().home)
        return true;
    auto& information = zef::FileInformation::shared();
    const auto* ref = fsRef();
    bool isHidden = false;
    const auto error = ref ? information.copyInvisibility({ *ref, place, isSymlink() }, isHidden)
                           : information.copyInvisibilityAtURL(place, isHidden);
    if (!error)
        return isHidden;
    zef::log("Error %d getting item invisibility for file %s %s ref", error, shown(place).c_str(),
        ref ? "with" : "without");
    return !ref;
}

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoAsking.h"
#include "ZEFFilesystemTools/Platform/Text/LocalizedString.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

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

bool conforms(const std::string& type, std::string_view other)
{
    return zef::TypeTable::shared().conforms(type, other);
}

std::string shown(const zef::FileURL& url)
{
    return url ? url.absoluteString() : "(null)";
}

} // namespace

struct ZEF_INTERNAL ZEFBasicInfoFileItem::FolderKind {
    bool isDirectory = false;
    bool isPackage = false;
};

const ZEFFileItemClass ZEFBasicInfoFileItem::classObject("ZEFBasicInfoFileItem",
    &ZEFFileItem::classObject, ZEFFileItemClass::initializer<ZEFBasicInfoFileItem>,
    ZEFBasicInfoFileItem::itemForArchiveDictionary);

ZEFBasicInfoFileItem::ZEFBasicInfoFileItem(const zef::FileURL& url, const zef::FSRef* fsRef,
    const zef::FileURL& pathRep, const zef::Stat* statInfo)
    : ZEFFileItem(url, fsRef, pathRep, statInfo)
{
}

ZEFBasicInfoFileItem::~ZEFBasicInfoFileItem() = default;

std::optional<std::string> ZEFBasicInfoFileItem::fileName()
{
    return Asking(*this).know(&ZEFBasicInfoDetails::fileName, [&] { return makeFileName(); });
}

std::optional<std::string> ZEFBasicInfoFileItem::makeFileName()
{
    if (isVolumesDirectory())
        return zef::localizedString("Computer");
    const auto place = url();
    return place ? std::optional(place.lastPathComponent()) : std::nullopt;
}

std::optional<std::string> ZEFBasicInfoFileItem::displayName()
{
    return Asking(*this).know(&ZEFBasicInfoDetails::displayName, [&] { return makeDisplayName(); });
}

std::optional<std::string> ZEFBasicInfoFileItem::makeDisplayName()
{
    if (isVolumesDirectory())
        return zef::localizedString("Computer");
    auto& information = zef::FileInformation::shared();
    const auto place = url();
    zef::FSRef ref;
    std::string name;
    if (ZEF_copyReference(ref))
        name = information.copyDisplayName({ ref, place, isSymlink() });
    else if (place)
        name = information.copyDisplayNameAtPath(place.path());
    if (!name.empty())
        return name;
    zef::log("Error getting display name for item %s", description().c_str());
    return place ? std::optional(place.lastPathComponent()) : std::nullopt;
}

std::string ZEFBasicInfoFileItem::uti()
{
    return *Asking(*this).know(
        &ZEFBasicInfoDetails::uti, [&] { return std::optional(makeType()); });
}

std::string ZEFBasicInfoFileItem::makeType()
{
    zef::FSRef ref;
    if (ZEF_copyReference(ref)) {
        auto type = zef::FileInformation::shared().copyContentType({ ref, url(), isSymlink() });
        if (type && !type->empty())
            return *std::move(type);
    }
    const auto name = fileName();
    return zef::TypeTable::shared().preferredTypeForExtension(
        name ? zef::extensionOfName(*name) : std::string_view(),
        isBasicDirectory() ? zef::type::directory : zef::type::data);
}

std::string ZEFBasicInfoFileItem::resolvedUTI()
{
    return *Asking(*this).know(
        &ZEFBasicInfoDetails::resolvedUTI, [&] { return std::optional(makeResolvedType()); });
}

std::string ZEFBasicInfoFileItem::makeResolvedType()
{
    const auto resolution = isRealFile() ? std::nullopt : target();
    if (!resolution)
        return uti();
    auto type = zef::FileInformation::shared().copyContentType(
        { resolution->ref, resolution->url });
    if (!type)
        zef::log("Error %d getting resolved UTI for file %s", numberOf(type.error()),
            shown(url()).c_str());
    return type && !type->empty() ? *std::move(type) : uti();
}

bool ZEFBasicInfoFileItem::isAlias()
{
    return Asking(*this).decide(&ZEFBasicInfoFileItem::_isAlias,
        [&] { return mayBeAlias() && conforms(uti(), zef::type::aliasFile); });
}

// Every file of a walk may be asked whether it is an alias: no type is made for that and kept where
// the answer is clear.
bool ZEFBasicInfoFileItem::mayBeAlias()
{
    if (Asking(*this).find([&] { return _details && _details->uti; }))
        return true;
    zef::FSRef ref;
    return !ZEF_copyReference(ref)
        || zef::FileInformation::shared().mayBeAliasFile({ ref, url(), isSymlink() });
}

bool ZEFBasicInfoFileItem::isRealFile()
{
    return !isAlias() && !isSymlink();
}

bool ZEFBasicInfoFileItem::isDirectory()
{
    return folderKind().isDirectory;
}

bool ZEFBasicInfoFileItem::isPackage()
{
    return folderKind().isPackage;
}

ZEFBasicInfoFileItem::FolderKind ZEFBasicInfoFileItem::folderKind()
{
    Asking asking(*this);
    FolderKind kind;
    const bool isKnown = asking.find([&] {
        kind = { _isDirectory.isYes(), _isPackage.isYes() };
        return _isDirectory.isKnown() && _isPackage.isKnown();
    });
    if (isKnown)
        return kind;
    kind = makeFolderKind();
    asking.keep([&] {
        _isDirectory.set(kind.isDirectory);
        _isPackage.set(kind.isPackage);
    });
    return kind;
}

// A package is never reported as a directory.
ZEFBasicInfoFileItem::FolderKind ZEFBasicInfoFileItem::makeFolderKind()
{
    if (!isBasicDirectory() && (isRealFile() || !conforms(resolvedUTI(), zef::type::folder)))
        return {};
    const bool isPackage = conforms(isBasicDirectory() ? uti() : resolvedUTI(), zef::type::package);
    return { !isPackage, isPackage };
}

bool ZEFBasicInfoFileItem::isApplication()
{
    return Asking(*this).decide(&ZEFBasicInfoFileItem::_isApplication,
        [&] { return conforms(resolvedUTI(), zef::type::application); });
}

bool ZEFBasicInfoFileItem::isRootDirectory()
{
    return Asking(*this).decide(&ZEFBasicInfoFileItem::_isRootDirectory,
        [&] { return url() == SharedURLs::shared().root; });
}

bool ZEFBasicInfoFileItem::isVolumesDirectory()
{
    return Asking(*this).decide(&ZEFBasicInfoFileItem::_isVolumesDirectory,
        [&] { return url() == SharedURLs::shared().volumes; });
}

bool ZEFBasicInfoFileItem::isInvisible()
{
    return Asking(*this).decide(
        &ZEFBasicInfoFileItem::_isInvisible, [&] { return makeInvisibility(); });
}

// A file that can't be asked about is visible when it has a reference, and invisible without one.
bool ZEFBasicInfoFileItem::makeInvisibility() const
{
    const auto place = url();
    if (place == SharedURLs::shared().net || place == SharedURLs::shared().home)
        return true;
    auto& information = zef::FileInformation::shared();
    zef::FSRef ref;
    const bool hasReference = ZEF_copyReference(ref);
    const auto isHidden = hasReference ? information.copyInvisibility({ ref, place, isSymlink() })
                                       : information.copyInvisibilityAtURL(place);
    if (isHidden.hasValue())
        return *isHidden;
    zef::log("Error %d getting item invisibility for file %s %s ref", numberOf(isHidden.error()),
        shown(place).c_str(), hasReference ? "with" : "without");
    return !hasReference;
}

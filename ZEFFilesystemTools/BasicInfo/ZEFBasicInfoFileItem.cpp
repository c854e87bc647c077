// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"
#include "ZEFFilesystemTools/Platform/Text/LocalizedString.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

namespace {

using Answers = ZEFBasicInfoAnswers;
using Details = ZEFBasicInfoAnswers::Details;

constexpr std::uint8_t folderFlags = Answers::directory | Answers::package;

zef::FileURL folderURL(std::string_view path)
{
    return zef::FileURL::fromPath(path, zef::URLKind::folder);
}

struct SharedURLs {
    zef::FileURL root = folderURL("/");
    zef::FileURL volumes = folderURL("/Volumes/");
    zef::FileURL net = folderURL("/net/");
    zef::FileURL home = folderURL("/home/");

    static const SharedURLs& shared() { return zef::immortal<SharedURLs>(); }
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

const ZEFFileItemClass ZEFBasicInfoFileItem::classObject("ZEFBasicInfoFileItem",
    &ZEFFileItem::classObject, ZEFFileItemClass::initializer<ZEFBasicInfoFileItem>,
    ZEFBasicInfoFileItem::itemForArchiveDictionary);

ZEFBasicInfoFileItem::ZEFBasicInfoFileItem(const zef::FileURL& url, const zef::FSRef* fsRef,
    const zef::FileURL& pathRep, const zef::Stat* statInfo)
    : ZEFFileItem(url, fsRef, pathRep, statInfo)
{
}

ZEFBasicInfoFileItem::~ZEFBasicInfoFileItem() = default;

template <typename Make> bool ZEFBasicInfoFileItem::decide(Answers::Flag flag, Make&& make)
{
    return *_answers.ask(std::uint8_t{ flag },
        [&] { return static_cast<std::uint8_t>(std::forward<Make>(make)() ? flag : 0); });
}

std::optional<std::string> ZEFBasicInfoFileItem::fileName()
{
    return _answers.ask(&Details::fileName, [&] { return makeFileName(); });
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
    return _answers.ask(&Details::displayName, [&] { return makeDisplayName(); });
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
    return *_answers.ask(&Details::uti, [&] { return makeType(); });
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
    return *_answers.ask(&Details::resolvedUTI, [&] { return makeResolvedType(); });
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
    return decide(
        Answers::alias, [&] { return mayBeAlias() && conforms(uti(), zef::type::aliasFile); });
}

// Every file of a walk may be asked whether it is an alias: no type is made for that and kept where
// the answer is clear.
bool ZEFBasicInfoFileItem::mayBeAlias()
{
    if (_answers.isTypeKnown())
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
    return folderKind() & Answers::directory;
}

bool ZEFBasicInfoFileItem::isPackage()
{
    return folderKind() & Answers::package;
}

std::uint8_t ZEFBasicInfoFileItem::folderKind()
{
    return *_answers.ask(folderFlags, [&] { return makeFolderKind(); });
}

std::uint8_t ZEFBasicInfoFileItem::makeFolderKind()
{
    if (!isBasicDirectory() && (isRealFile() || !conforms(resolvedUTI(), zef::type::folder)))
        return 0;
    const bool isPackage = conforms(isBasicDirectory() ? uti() : resolvedUTI(), zef::type::package);
    return isPackage ? Answers::package : Answers::directory;
}

bool ZEFBasicInfoFileItem::isApplication()
{
    return decide(
        Answers::application, [&] { return conforms(resolvedUTI(), zef::type::application); });
}

bool ZEFBasicInfoFileItem::isRootDirectory()
{
    return decide(Answers::rootDirectory, [&] { return url() == SharedURLs::shared().root; });
}

bool ZEFBasicInfoFileItem::isVolumesDirectory()
{
    return decide(Answers::volumesDirectory, [&] { return url() == SharedURLs::shared().volumes; });
}

bool ZEFBasicInfoFileItem::isInvisible()
{
    return decide(Answers::invisible, [&] { return makeInvisibility(); });
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

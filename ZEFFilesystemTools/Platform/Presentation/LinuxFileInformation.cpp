// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/LinuxFileInformation.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"
#include "ZEFFilesystemTools/Platform/Presentation/DisplayName.h"
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"
#include "ZEFFilesystemTools/Platform/Presentation/LinkFollower.h"
#include "ZEFFilesystemTools/Platform/Types/TypeIdentifiers.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include <utility>

namespace zef {
namespace {

std::string_view typeOfEntry(const DesktopEntry* entry)
{
    if (entry && entry->kind() == DesktopEntry::Kind::application)
        return type::applicationEntry;
    return entry && entry->isAlias() ? type::aliasFile : type::desktopEntry;
}

// Links and folders never are entries, whatever they are called.
bool mayBeEntry(const FileInformation::Object& object, std::string_view name)
{
    return !object.isSymlink && !object.ref.isFolder() && DesktopEntryCache::isNameOfEntry(name);
}

std::string typeByName(const FSRef& ref, std::string_view name)
{
    const auto& types = TypeTable::shared();
    return ref.isFolder() ? types.typeOfFolderNamed(name) : types.typeOfFileNamed(name);
}

// As the last component of a URL: "/" for the root.
std::string_view nameAt(const FileURL& url)
{
    const auto name = url.name();
    return name.empty() && url ? "/" : name;
}

// The last component of `path`, after `path` has lost the slashes at its end.
std::string_view takeName(std::string_view& path)
{
    const auto end = path.find_last_not_of('/');
    if (end == std::string_view::npos)
        return path.substr(0, 1);
    path = path.substr(0, end + 1);
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

URLKind kindOf(const Stat& stat)
{
    return stat.isFolder() ? URLKind::folder : URLKind::file;
}

// The reference to what is at `place`, and where that is; neither changes on a failure.
FileError copyPlace(const ObjectPlace& place, FSRef& ref, FileURL& url)
{
    auto found = place.url().withKind(kindOf(place.stat()));
    if (!Locator::shared().makeRef(found, place.stat(), ref))
        return FileError::badReference;
    url = std::move(found);
    return FileError::none;
}

} // namespace

FileInformation& FileInformation::system()
{
    static auto& information = *new LinuxFileInformation; // never destroyed, for late threads
    return information;
}

FileError LinuxFileInformation::copyContentType(const Object& object, std::string& type)
{
    if (object.ref.isEmpty())
        return FileError::badReference;
    if (object.isSymlink) {
        type = type::symlink;
        return FileError::none;
    }
    if (mayBeAliasFile(object))
        return copyTypeOfEntry(object, type);
    type = typeByName(object.ref, object.url.name());
    return FileError::none;
}

bool LinuxFileInformation::mayBeAliasFile(const Object& object)
{
    return !object.url || mayBeEntry(object, object.url.name());
}

// Also of an object whose name isn't known yet.
FileError LinuxFileInformation::copyTypeOfEntry(const Object& object, std::string& type)
{
    ObjectPlace place;
    const auto result = place.find(object.ref, object.url);
    if (result != FileError::none)
        return result;
    if (mayBeEntry(object, place.url().name()))
        type = typeOfEntry(_entries.entry(place.path(), place.stat()).get());
    else
        type = typeByName(object.ref, place.url().name());
    return result;
}

FileError LinuxFileInformation::copyInvisibility(const Object& object, bool& isInvisible)
{
    if (ObjectPlace::isJustFound(object.ref, object.url)) {
        isInvisible = _hiddenLists.hides(object.url);
        return FileError::none;
    }
    ObjectPlace place;
    const auto result = place.find(object.ref, object.url);
    if (result == FileError::none)
        isInvisible = _hiddenLists.hides(place.url());
    return result;
}

FileError LinuxFileInformation::copyInvisibilityAtURL(const FileURL& url, bool& isInvisible)
{
    ObjectPlace place;
    const auto result = place.lookAt(url);
    if (result == FileError::none)
        isInvisible = _hiddenLists.hides(url);
    return result;
}

std::string LinuxFileInformation::copyDisplayName(const Object& object)
{
    if (object.url && !mayBeEntry(object, object.url.name()))
        return displayNameOfBytes(nameAt(object.url));
    ObjectPlace place;
    if (place.find(object.ref, object.url) != FileError::none)
        return {};
    return nameToShow(nameAt(place.url()), place.path(), place.stat());
}

std::string LinuxFileInformation::copyDisplayNameAtPath(const std::string& path)
{
    std::string_view rest = path;
    const auto name = takeName(rest);
    PathBytes bytes;
    Stat stat;
    const bool mayBeRead = DesktopEntryCache::isNameOfEntry(name)
        && path.find('\0') == std::string::npos && bytes.append(rest)
        && FileSystem::shared().statLink(bytes.text(), stat) == 0;
    return mayBeRead ? nameToShow(name, bytes.text(), stat) : displayNameOfBytes(name);
}

std::string LinuxFileInformation::nameToShow(
    std::string_view name, const char* path, const Stat& stat)
{
    const auto entry = DesktopEntryCache::isNameOfEntry(name) ? _entries.entry(path, stat)
                                                              : nullptr;
    return entry && !entry->name().empty() ? entry->name() : displayNameOfBytes(name);
}

FileError LinuxFileInformation::resolveAliasFile(
    FSRef& ref, FileURL& url, bool& targetIsFolder, bool& wasAliased)
{
    ObjectPlace place;
    auto result = place.find(ref, url);
    if (result != FileError::none)
        return result;
    LinkFollower resolution(_entries, _automountPoints, LinkFollower::Follows::linksAndAliasFiles);
    result = resolution.follow(place);
    if (result != FileError::none)
        return result;
    // The reference of an object that is its own target knows more than a new one would.
    if (resolution.hasFollowed())
        result = copyPlace(place, ref, url);
    else
        url = place.url().withKind(kindOf(place.stat()));
    if (result != FileError::none)
        return result;
    targetIsFolder = place.stat().isFolder();
    wasAliased = resolution.hasFollowed();
    return result;
}

FileError LinuxFileInformation::copyTargetOfURL(const FileURL& url, FSRef& ref, FileURL& target)
{
    ObjectPlace place;
    auto result = place.lookAt(url);
    if (result == FileError::none)
        result = LinkFollower(_entries, _automountPoints, LinkFollower::Follows::links)
                     .follow(place);
    return result == FileError::none ? copyPlace(place, ref, target) : result;
}

} // namespace zef

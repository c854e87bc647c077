// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/LinuxFileInformation.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"
#include "ZEFFilesystemTools/Platform/Presentation/DisplayName.h"
#include "ZEFFilesystemTools/Platform/Presentation/LinkFollower.h"
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

FileURL urlOf(const ObjectPlace& place)
{
    return place.url().withKind(kindOf(place.stat()));
}

Expected<FileInformation::Target> targetAt(const ObjectPlace& place, bool wasAliased)
{
    FileInformation::Target target{ .ref = {},
        .url = urlOf(place),
        .isFolder = place.stat().isFolder(),
        .wasAliased = wasAliased };
    if (!Locator::shared().makeRef(target.url, place.stat(), target.ref))
        return FileError::badReference;
    return target;
}

} // namespace

FileInformation& FileInformation::system()
{
    return immortal<LinuxFileInformation>();
}

Expected<std::string> LinuxFileInformation::copyContentType(const Object& object)
{
    if (object.ref.isEmpty())
        return FileError::badReference;
    if (object.isSymlink)
        return std::string(type::symlink);
    if (mayBeAliasFile(object))
        return copyTypeOfEntry(object);
    return typeByName(object.ref, object.url.name());
}

bool LinuxFileInformation::mayBeAliasFile(const Object& object)
{
    return !object.url || mayBeEntry(object, object.url.name());
}

// Also of an object whose name isn't known yet.
Expected<std::string> LinuxFileInformation::copyTypeOfEntry(const Object& object)
{
    ObjectPlace place;
    const auto error = place.findOrRecall(object.ref, object.url);
    if (error != FileError::none)
        return error;
    if (mayBeEntry(object, place.url().name()))
        return std::string(typeOfEntry(_entries.entry(place.path(), place.stat()).get()));
    return typeByName(object.ref, place.url().name());
}

Expected<bool> LinuxFileInformation::copyInvisibility(const Object& object)
{
    if (ObjectPlace::isJustFound(object.ref, object.url))
        return _hiddenLists.hides(object.url);
    ObjectPlace place;
    const auto error = place.findOrRecall(object.ref, object.url);
    if (error != FileError::none)
        return error;
    return _hiddenLists.hides(place.url());
}

Expected<bool> LinuxFileInformation::copyInvisibilityAtURL(const FileURL& url)
{
    ObjectPlace place;
    const auto error = place.lookAt(url);
    if (error != FileError::none)
        return error;
    return _hiddenLists.hides(url);
}

std::string LinuxFileInformation::copyDisplayName(const Object& object)
{
    if (object.url && !mayBeEntry(object, object.url.name()))
        return displayNameOfBytes(nameAt(object.url));
    ObjectPlace place;
    if (place.findOrRecall(object.ref, object.url) != FileError::none)
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

Expected<FileInformation::Target> LinuxFileInformation::resolveAliasFile(
    const FSRef& ref, const FileURL& url)
{
    ObjectPlace place;
    auto error = place.findOrRecall(ref, url);
    if (error != FileError::none)
        return error;
    LinkFollower follower(_entries, _automountPoints, LinkFollower::Follows::linksAndAliasFiles);
    error = follower.follow(place);
    if (error != FileError::none)
        return error;
    if (follower.hasFollowed())
        return targetAt(place, true);
    // The reference of an object that is its own target knows more than a new one would.
    return Target{ .ref = ref, .url = urlOf(place), .isFolder = place.stat().isFolder() };
}

Expected<FileInformation::Target> LinuxFileInformation::copyTargetOfURL(const FileURL& url)
{
    ObjectPlace place;
    auto error = place.lookAt(url);
    if (error != FileError::none)
        return error;
    LinkFollower follower(_entries, _automountPoints, LinkFollower::Follows::links);
    error = follower.follow(place);
    if (error != FileError::none)
        return error;
    return targetAt(place, follower.hasFollowed());
}

} // namespace zef

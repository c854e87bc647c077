// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/LinkFollower.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Presentation/PathDots.h"

#include <array>
#include <cerrno>
#include <climits>
#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace zef {
namespace {

constexpr unsigned mostSteps = 16;

} // namespace

FileError LinkFollower::follow(ObjectPlace& place)
{
    for (_steps = 0;; ++_steps) {
        FileURL next;
        auto result = nextPlace(place, next);
        if (result != FileError::none || !next)
            return result;
        if (_steps == mostSteps)
            return FileError::io;
        result = place.lookAt(next);
        if (result != FileError::none)
            return result;
    }
}

// Leaves `next` nil at the end of the way.
FileError LinkFollower::nextPlace(const ObjectPlace& place, FileURL& next) const
{
    if (place.stat().isSymlink())
        return targetOfLink(place, next);
    return _follows == Follows::linksAndAliasFiles ? targetOfAliasFile(place, next)
                                                   : FileError::none;
}

FileError LinkFollower::targetOfLink(const ObjectPlace& link, FileURL& target) const
{
    std::array<char, PATH_MAX> bytes;
    const auto length = ::readlink(link.path(), bytes.data(), bytes.size());
    if (length < 0)
        return fileErrorOfErrno(errno);
    const std::string_view text(bytes.data(), static_cast<std::size_t>(length));
    std::string path;
    if (!text.starts_with('/'))
        path = link.url().parentFolder().bytes();
    return enter(std::move(path.append(text)), target);
}

FileError LinkFollower::targetOfAliasFile(const ObjectPlace& file, FileURL& target) const
{
    if (!DesktopEntryCache::isNameOfEntry(file.url().name()))
        return FileError::none;
    const auto entry = _entries.entry(file.path(), file.stat());
    return entry && entry->isAlias() ? enter(entry->target(), target) : FileError::none;
}

FileError LinkFollower::enter(std::string path, FileURL& target) const
{
    // Asked before ".." is taken out as well, because that looks at folders.
    if (_automountPoints.areAbove(path))
        return FileError::notFound;
    target = FileURL::fromPath(pathWithoutDots(std::move(path)), URLKind::file);
    const bool isThere = target && !_automountPoints.areAbove(target.path());
    return isThere ? FileError::none : FileError::notFound;
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/LinkFollower.h"

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
        const auto next = nextPlace(place);
        if (!next || !*next)
            return next.error();
        if (_steps == mostSteps)
            return FileError::io;
        const auto error = place.lookAt(*next);
        if (error != FileError::none)
            return error;
    }
}

// Null at the end of the way.
Expected<FileURL> LinkFollower::nextPlace(const ObjectPlace& place) const
{
    if (place.stat().isSymlink())
        return targetOfLink(place);
    return _follows == Follows::linksAndAliasFiles ? targetOfAliasFile(place) : FileURL();
}

Expected<FileURL> LinkFollower::targetOfLink(const ObjectPlace& link) const
{
    std::array<char, PATH_MAX> bytes;
    const auto length = ::readlink(link.path(), bytes.data(), bytes.size());
    if (length < 0)
        return fileErrorOfErrno(errno);
    const std::string_view text(bytes.data(), static_cast<std::size_t>(length));
    std::string path;
    if (!text.starts_with('/'))
        path = link.url().parentFolder().bytes();
    return enter(std::move(path.append(text)));
}

Expected<FileURL> LinkFollower::targetOfAliasFile(const ObjectPlace& file) const
{
    if (!DesktopEntryCache::isNameOfEntry(file.url().name()))
        return FileURL();
    const auto entry = _entries.entry(file.path(), file.stat());
    return entry && entry->isAlias() ? enter(entry->target()) : FileURL();
}

Expected<FileURL> LinkFollower::enter(std::string path) const
{
    // Asked before ".." is taken out as well, because that looks at folders.
    if (_automountPoints.areAbove(path))
        return FileError::notFound;
    auto target = FileURL::fromPath(pathWithoutDots(std::move(path)), URLKind::file);
    if (!target || _automountPoints.areAbove(target.path()))
        return FileError::notFound;
    return target;
}

} // namespace zef

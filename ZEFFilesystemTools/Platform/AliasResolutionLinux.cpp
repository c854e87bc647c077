// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasResolution.h"

#include "ZEFFilesystemTools/Platform/CatalogResult.h"
#include "ZEFFilesystemTools/Platform/LinuxCalls.h"
#include "ZEFFilesystemTools/Platform/PathDots.h"

#include <array>
#include <cerrno>
#include <climits>
#include <string>
#include <string_view>

#include <unistd.h>

namespace zef {
namespace {

constexpr unsigned mostSteps = 16;

} // namespace

std::int16_t AliasResolution::follow(ObjectPlace& place)
{
    for (_steps = 0;; ++_steps) {
        FileURL next;
        auto result = nextPlace(place, next);
        if (result != CatalogResult::noError || !next)
            return result;
        if (_steps == mostSteps)
            return CatalogResult::ioError;
        result = place.lookAt(next);
        if (result != CatalogResult::noError)
            return result;
    }
}

// Leaves `next` nil at the end of the way.
std::int16_t AliasResolution::nextPlace(const ObjectPlace& place, FileURL& next) const
{
    if (place.stat().isSymlink())
        return targetOfLink(place, next);
    if (_follows == Follows::linksAndAliasFiles)
        next = targetOfAliasFile(place);
    return CatalogResult::noError;
}

std::int16_t AliasResolution::targetOfLink(const ObjectPlace& link, FileURL& target)
{
    std::array<char, PATH_MAX> bytes;
    const auto length = ::readlink(link.path(), bytes.data(), bytes.size());
    if (length < 0)
        return catalogResultOfErrno(errno);
    const std::string_view text(bytes.data(), static_cast<std::size_t>(length));
    std::string path;
    if (!text.starts_with('/'))
        path = link.url().parentFolder().bytes();
    target = FileURL::fromPath(pathWithoutDots(path.append(text)), URLKind::file);
    return target ? CatalogResult::noError : CatalogResult::notFound;
}

FileURL AliasResolution::targetOfAliasFile(const ObjectPlace& file) const
{
    if (!DesktopEntries::isNameOfEntry(file.url().name()))
        return nullptr;
    const auto entry = _entries.entry(file.path(), file.stat());
    if (!entry || !entry->isAlias())
        return nullptr;
    return FileURL::fromPath(pathWithoutDots(entry->target()), URLKind::file);
}

} // namespace zef

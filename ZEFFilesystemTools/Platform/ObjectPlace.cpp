// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/ObjectPlace.h"

#include "ZEFFilesystemTools/Platform/CatalogResult.h"
#include "ZEFFilesystemTools/Platform/FileSystem.h"
#include "ZEFFilesystemTools/Platform/LinuxCalls.h"
#include "ZEFFilesystemTools/Platform/Locator.h"

#include <cerrno>

namespace zef {

std::int16_t ObjectPlace::find(const FSRef& ref, const FileURL& lastKnown)
{
    if (ref.isEmpty())
        return CatalogResult::badReference;
    const auto result = lastKnown ? lookFor(ref, lastKnown) : CatalogResult::notFound;
    if (result == CatalogResult::noError)
        return result;
    const auto place = Locator::shared().locate(ref, lastKnown);
    return place ? lookFor(ref, place) : result;
}

std::int16_t ObjectPlace::lookFor(const FSRef& ref, const FileURL& url)
{
    const auto result = lookAt(url);
    if (result != CatalogResult::noError)
        return result;
    return sameObject(_stat, ref, path()) ? result : CatalogResult::notFound;
}

std::int16_t ObjectPlace::lookAt(const FileURL& url)
{
    if (!url)
        return CatalogResult::badReference;
    if (!url.fileSystemRepresentation(_path))
        return CatalogResult::ioError;
    _url = url;
    const int error = FileSystem::shared().statLink(path(), _stat);
    // Where a file stands in a folder's place there is nothing to be found.
    return catalogResultOfErrno(error == ENOTDIR ? ENOENT : error);
}

} // namespace zef

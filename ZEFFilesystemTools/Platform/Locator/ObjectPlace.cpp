// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"

#include "ZEFFilesystemTools/Platform/Disk/CatalogResult.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Time/RecentLook.h"

#include <cerrno>

namespace zef {
namespace {

// The last object that this thread has found.
struct LastFound {
    RecentLook look;
    FSRef ref;
    FileURL url;
    Stat stat;

    bool serves(const FSRef& asked, const FileURL& lastKnown) const
    {
        return ref.hasNumbersOf(asked) && ref.birthTime() == asked.birthTime() && url == lastKnown
            && look.serves();
    }
};

LastFound& lastFound()
{
    thread_local LastFound found;
    return found;
}

} // namespace

std::int16_t ObjectPlace::find(const FSRef& ref, const FileURL& lastKnown)
{
    if (ref.isEmpty())
        return CatalogResult::badReference;
    if (lastFound().serves(ref, lastKnown) && lastKnown.fileSystemRepresentation(_path)) {
        _url = lastKnown;
        _stat = lastFound().stat;
        return CatalogResult::noError;
    }
    const auto result = lastKnown ? lookFor(ref, lastKnown) : CatalogResult::notFound;
    if (result == CatalogResult::noError)
        return result;
    const auto place = Locator::shared().locate(ref, lastKnown);
    return place ? lookFor(ref, place) : result;
}

std::int16_t ObjectPlace::lookFor(const FSRef& ref, const FileURL& url)
{
    RecentLook look;
    look.take();
    const auto result = lookAt(url);
    if (result != CatalogResult::noError)
        return result;
    if (!sameObject(_stat, ref, path()))
        return CatalogResult::notFound;
    lastFound() = { .look = look, .ref = ref, .url = url, .stat = _stat };
    return result;
}

void ObjectPlace::noteFound(const FSRef& ref, const FileURL& url, const Stat& stat)
{
    RecentLook look;
    look.take();
    lastFound() = { .look = look, .ref = ref, .url = url, .stat = stat };
}

bool ObjectPlace::isJustFound(const FSRef& ref, const FileURL& lastKnown)
{
    return !ref.isEmpty() && lastFound().serves(ref, lastKnown);
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

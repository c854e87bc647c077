// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Time/RecentLook.h"

#include <cerrno>

namespace zef {
namespace {

// The last object that this thread found. This is the library's only ambient state. It can't be
// passed: a listing's look reaches the question that it spares through a host's filter, and the
// questions that a host asks about one file one after the other share no object that may grow.
//
// It serves only `findOrRecall` and `isJustFound`, repeats only what a successful look said of this
// very reference at this very URL, and only for a RecentLook's lifetime. A caller that needs to
// know what is on disk now calls `find`.
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

FileError ObjectPlace::find(const FSRef& ref, const FileURL& lastKnown)
{
    if (ref.isEmpty())
        return FileError::badReference;
    const auto result = lastKnown ? lookFor(ref, lastKnown) : FileError::notFound;
    if (result == FileError::none)
        return result;
    const auto place = Locator::shared().locate(ref, lastKnown);
    return place ? lookFor(ref, place) : result;
}

FileError ObjectPlace::findOrRecall(const FSRef& ref, const FileURL& lastKnown)
{
    if (!isJustFound(ref, lastKnown) || !lastKnown.fileSystemRepresentation(_path))
        return find(ref, lastKnown);
    _url = lastKnown;
    _stat = lastFound().stat;
    return FileError::none;
}

FileError ObjectPlace::lookFor(const FSRef& ref, const FileURL& url)
{
    RecentLook look;
    look.take();
    const auto result = lookAt(url);
    if (result != FileError::none)
        return result;
    if (!sameObject(_stat, ref, path()))
        return FileError::notFound;
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

FileError ObjectPlace::lookAt(const FileURL& url)
{
    if (!url)
        return FileError::badReference;
    if (!url.fileSystemRepresentation(_path))
        return FileError::io;
    _url = url;
    const int error = FileSystem::shared().statLink(path(), _stat);
    // Where a file stands in a folder's place there is nothing to be found.
    return fileErrorOfErrno(error == ENOTDIR ? ENOENT : error);
}

} // namespace zef

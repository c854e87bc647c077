// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/SourceFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zef {

SourceFolder::SourceFolder(std::string path)
    : _path(std::move(path))
{
}

int SourceFolder::open()
{
    if (_folder)
        return 0;
    const int descriptor = DescriptorReserve::shared().openAt(
        AT_FDCWD, _path.c_str(), O_PATH | O_DIRECTORY);
    if (descriptor < 0)
        return errno;
    auto folder = makeRef<ObjectDescriptor>(descriptor);
    Stat stat;
    std::uint64_t mountID = 0;
    if (const int error = folder->stat(stat, mountID))
        return error;
    const auto numbers = ObjectNumbers::of(stat);
    if (std::exchange(_isKnown, true) && (numbers != _numbers || mountID != _mountID))
        return ESTALE;
    _numbers = numbers;
    _mountID = mountID;
    _folder = std::move(folder);
    return 0;
}

void SourceFolder::close()
{
    _folder = nullptr;
    _ascent.closeTop();
}

TrashProblem SourceFolder::examine()
{
    if (_isGood)
        return {};
    if (::faccessat(descriptor(), ".", W_OK | X_OK, AT_EACCESS) != 0)
        return { .error = errno };
    if (const int error = _ascent.climb(_folder))
        return { .error = error };
    PathBytes path;
    if (!_folder->currentPath(path))
        return { .error = ENAMETOOLONG, .text = "the system doesn't tell where its folder is" };
    _pathWithoutLinks = path.view();
    _isGood = true;
    return {};
}

bool SourceFolder::isOthersStickyFolder() const
{
    struct stat info { };
    return ::fstatat(descriptor(), "", &info, AT_EMPTY_PATH) == 0 && info.st_mode & S_ISVTX
        && info.st_uid != ::geteuid();
}

std::string SourceFolder::pathOfEntry(std::string_view name) const
{
    auto path = _pathWithoutLinks;
    if (!path.ends_with('/'))
        path += '/';
    return path.append(name);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "tools/zef/Find/DeniedFolders.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {
namespace {

// Sockets and devices, which the walk takes for folders, are none that may not be read.
bool isDeniedFolder(const char* path)
{
    struct stat info { };
    return faccessat(AT_FDCWD, path, R_OK | X_OK, AT_EACCESS) != 0 && errno == EACCES
        && stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

} // namespace

DeniedFolders::DeniedFolders(
    zef::Ref<ZEFDirectoryFilter> filter, std::function<void(const std::string&)> tell)
    : _filter(std::move(filter))
    , _tell(std::move(tell))
{
}

DeniedFolders::~DeniedFolders() = default;

void DeniedFolders::setWalk(const ZEFFileItemArray& files, std::ptrdiff_t depth)
{
    _depth = depth;
    for (const auto& file : files) {
        const auto target = _filter->shouldIncludeFile(file.get())
            ? _filter->trueDirectoryObjectForFile(file.get())
            : nullptr;
        if (const auto url = target ? target->url() : zef::FileURL())
            _beginnings.insert(url.path());
    }
}

bool DeniedFolders::shouldIncludeFile(ZEFFileItem* file) const
{
    return _filter->shouldIncludeFile(file);
}

zef::Ref<ZEFFileItem> DeniedFolders::trueDirectoryObjectForFile(ZEFFileItem* file) const
{
    auto folder = _filter->trueDirectoryObjectForFile(file);
    if (const auto url = folder ? folder->url() : zef::FileURL())
        look(url.path());
    return folder;
}

void DeniedFolders::look(const std::string& path) const
{
    if (isDeniedFolder(path.c_str()) && !isTooDeep(path) && _told.insert(path).second)
        _tell(path);
}

// The filter is asked also about folders below the deepest level. What lies beneath nothing that
// the walk begins with was reached through a link, nobody knows on which level.
bool DeniedFolders::isTooDeep(std::string path) const
{
    if (_depth == -1)
        return false;
    for (std::ptrdiff_t level = 1; !path.empty(); ++level) {
        if (_beginnings.contains(path))
            return level > _depth;
        const auto slash = path.rfind('/');
        path.resize(slash == 0 && path.size() > 1 ? 1 : slash);
    }
    return false;
}

} // namespace tool

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/HiddenListCache.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include <string>
#include <utility>

namespace zef {

bool HiddenListCache::hides(const FileURL& url)
{
    const auto name = url.name();
    if (name.empty() || name.front() == '.')
        return !name.empty();
    const auto list = listFor(url);
    return list && list->contains(name);
}

std::shared_ptr<const HiddenList> HiddenListCache::listFor(const FileURL& url)
{
    {
        std::lock_guard lock(_mutex);
        const auto& last = _lastList;
        if (last.url && &last.url.parentFolder() == &url.parentFolder() && last.look.serves())
            return last.list;
    }
    LastList found;
    found.url = url;
    found.look.take();
    found.list = readListFor(url);
    auto list = found.list;
    std::lock_guard lock(_mutex);
    std::swap(_lastList, found); // what was there dies outside of the lock
    return list;
}

std::shared_ptr<const HiddenList> HiddenListCache::readListFor(const FileURL& url)
{
    PathBytes path;
    Stat stat;
    if (!path.append(url.parentFolder().bytes()) || !path.append(".hidden")
        || FileSystem::shared().statLink(path.text(), stat) != 0)
        return nullptr;
    return _lists.read(
        path.text(), stat, [](std::string bytes) { return HiddenList(std::move(bytes)); });
}

} // namespace zef

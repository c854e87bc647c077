// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/HiddenLists.h"

#include "ZEFFilesystemTools/Platform/FileSystem.h"

#include <string>
#include <utility>

namespace zef {

bool HiddenLists::hides(const FileURL& url)
{
    const auto name = url.name();
    if (name.empty() || name.front() == '.')
        return !name.empty();
    PathBytes path;
    Stat stat;
    if (!path.append(url.parentFolder().bytes()) || !path.append(".hidden")
        || FileSystem::shared().statLink(path.text(), stat) != 0)
        return false;
    const auto list = _lists.read(
        path.text(), stat, [](std::string bytes) { return HiddenList(std::move(bytes)); });
    return list && list->contains(name);
}

} // namespace zef

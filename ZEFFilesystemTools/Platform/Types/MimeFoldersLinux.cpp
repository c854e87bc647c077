// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/MimeFolders.h"

#include "ZEFFilesystemTools/Platform/Paths/DataHome.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace zef {
namespace {

std::string_view variable(const char* name)
{
    const auto* value = std::getenv(name);
    return value ? value : "";
}

bool isAbsolute(std::string_view path)
{
    return path.starts_with('/');
}

void add(std::vector<std::string>& folders, std::string_view dataFolder)
{
    while (dataFolder.ends_with('/'))
        dataFolder.remove_suffix(1);
    const auto folder = std::string(dataFolder) + "/mime";
    if (std::find(folders.begin(), folders.end(), folder) == folders.end())
        folders.push_back(folder);
}

} // namespace

std::vector<std::string> mimeFolders()
{
    std::vector<std::string> folders;
    const auto ownData = dataHome();
    if (!ownData.empty())
        add(folders, ownData);
    auto list = variable("XDG_DATA_DIRS");
    if (list.empty())
        list = "/usr/local/share:/usr/share";
    while (!list.empty()) {
        const auto end = std::min(list.find(':'), list.size());
        if (isAbsolute(list.substr(0, end)))
            add(folders, list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return folders;
}

} // namespace zef

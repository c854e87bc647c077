// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/MimeFolders.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

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

// The folder that the user database tells; empty when it doesn't.
std::string homeOfUser()
{
    std::array<char, 16384> buffer;
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found
        || !found->pw_dir)
        return {};
    return found->pw_dir;
}

std::string dataHome()
{
    const auto dataHome = variable("XDG_DATA_HOME");
    if (isAbsolute(dataHome))
        return std::string(dataHome);
    const auto home = variable("HOME");
    return (isAbsolute(home) ? std::string(home) : homeOfUser()) + "/.local/share";
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
    add(folders, dataHome());
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

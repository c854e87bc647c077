// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/DataHome.h"

#include <array>
#include <cstdlib>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

namespace zef {
namespace {

std::string absolutePathIn(const char* variable)
{
    const auto* value = std::getenv(variable);
    return value && *value == '/' ? value : "";
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

} // namespace

std::string dataHome()
{
    auto folder = absolutePathIn("XDG_DATA_HOME");
    if (!folder.empty())
        return folder;
    auto home = absolutePathIn("HOME");
    if (home.empty())
        home = homeOfUser();
    return home.empty() ? home : home + "/.local/share";
}

} // namespace zef

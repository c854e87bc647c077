// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/DataHome.h"

#include <array>
#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace zef {
namespace {

std::optional<std::string> absolutePathIn(const char* variable)
{
    const auto* value = std::getenv(variable);
    return value && *value == '/' ? std::optional<std::string>(value) : std::nullopt;
}

// As the user database has it.
std::optional<std::string> homeOfUser()
{
    std::array<char, 16384> buffer;
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found
        || !found->pw_dir || !*found->pw_dir)
        return std::nullopt;
    return found->pw_dir;
}

} // namespace

std::optional<std::string> dataHome()
{
    if (auto folder = absolutePathIn("XDG_DATA_HOME"))
        return folder;
    auto home = absolutePathIn("HOME");
    if (!home)
        home = homeOfUser();
    return home ? std::optional(*home + "/.local/share") : std::nullopt;
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "tools/zef/Watch/FolderArgument.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace tool {

std::string reasonNotToWatch(const std::string& path)
{
    const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
    if (folder < 0)
        return std::strerror(errno);
    // Where nothing can be looked up, the names alone make no items.
    const bool isSearchable = faccessat(folder, ".", X_OK, AT_EACCESS) == 0;
    std::string reason = isSearchable ? "" : std::strerror(errno);
    close(folder);
    return reason;
}

std::string pathToWatch(const std::string& path)
{
    auto spelled = std::filesystem::path(path);
    if (!spelled.has_filename())
        spelled = spelled.parent_path();
    const bool hasDots = std::any_of(spelled.begin(), spelled.end(),
        [](const auto& name) { return name == "." || name == ".."; });
    std::error_code error;
    if (!hasDots && !std::filesystem::is_symlink(spelled, error))
        return path;
    const auto resolved = std::filesystem::canonical(spelled, error);
    return error ? path : resolved.string();
}

} // namespace tool

// SPDX-License-Identifier: MIT
#include "tools/zef/FileArgument.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {
namespace {

namespace fs = std::filesystem;

bool isDots(const fs::path& name)
{
    return name == "." || name == "..";
}

// Free of dots, because a file's folder is told by its path; apart from that as it is spelled.
fs::path withoutDots(const fs::path& path, std::error_code& error)
{
    auto spelled = path;
    const bool hasSlash = !spelled.has_filename() && spelled != spelled.root_path();
    if (hasSlash)
        spelled = spelled.parent_path();
    if (isDots(spelled.filename()) || (hasSlash && fs::is_symlink(spelled, error)))
        return fs::canonical(spelled, error);
    const auto folder = spelled.parent_path();
    if (std::none_of(folder.begin(), folder.end(), isDots))
        return spelled;
    return fs::canonical(folder, error) / spelled.filename();
}

} // namespace

zef::Ref<ZEFFileItem> itemOfArgument(
    const std::string& path, const ZEFFileItemClass& fileClass, std::string& reason)
{
    struct stat info { };
    std::error_code error;
    if (lstat(path.c_str(), &info) != 0) {
        reason = std::strerror(errno);
        return nullptr;
    }
    const auto spelled = withoutDots(path, error);
    if (error) {
        reason = error.message();
        return nullptr;
    }
    const auto kind = S_ISDIR(info.st_mode) ? zef::URLKind::folder : zef::URLKind::file;
    const auto url = zef::FileURL::fromPath(spelled.string(), kind);
    auto item = fileClass.newFileItemForURL(url);
    zef::PathBytes bytes;
    if (!item)
        reason = std::strerror(url.fileSystemRepresentation(bytes) ? ENOENT : ENAMETOOLONG);
    return item;
}

int forEachArgument(const std::vector<std::string>& paths, const ZEFFileItemClass& fileClass,
    const std::function<std::string(ZEFFileItem&)>& handle)
{
    bool hasFailed = false;
    for (const auto& path : paths) {
        if (mustEnd())
            return statusOfEnd();
        std::string reason;
        if (const auto item = itemOfArgument(path, fileClass, reason))
            reason = handle(*item);
        if (reason.empty())
            continue;
        complain(path, reason);
        hasFailed = true;
    }
    if (mustEnd())
        return statusOfEnd();
    return hasFailed ? ExitStatus::failed : ExitStatus::done;
}

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
    auto spelled = fs::path(path);
    if (!spelled.has_filename())
        spelled = spelled.parent_path();
    const bool hasDots = std::any_of(spelled.begin(), spelled.end(), isDots);
    std::error_code error;
    if (!hasDots && !fs::is_symlink(spelled, error))
        return path;
    const auto resolved = fs::canonical(spelled, error);
    return error ? path : resolved.string();
}

} // namespace tool

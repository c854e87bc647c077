// SPDX-License-Identifier: MIT
#include "tools/zef/FileArgument.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>

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

} // namespace tool

// SPDX-License-Identifier: MIT
#include "tools/zef/LoadFailure.h"

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cerrno>
#include <charconv>
#include <cstring>

namespace tool {
namespace {

constexpr std::string_view sender = "ZEFFileLoadOperation ";
constexpr std::string_view error = " error ";

// 0 where the system has no words for it.
int systemError(int code)
{
    switch (code) {
    case numberOf(zef::FileError::accessDenied):
        return EACCES;
    case numberOf(zef::FileError::notAFolder):
        return ENOTDIR;
    case numberOf(zef::FileError::notFound):
    case numberOf(zef::FileError::badReference):
        return ENOENT;
    case numberOf(zef::FileError::tooManyOpenFiles):
        return EMFILE;
    case numberOf(zef::FileError::outOfMemory):
        return ENOMEM;
    case numberOf(zef::FileError::io):
        return EIO;
    default:
        return 0;
    }
}

std::string reasonOf(int code)
{
    const int known = systemError(code);
    return known ? std::strerror(known) : "it can't be listed: error " + std::to_string(code);
}

} // namespace

std::optional<LoadFailure> LoadFailure::inLog(std::string_view line)
{
    const auto number = line.find(error);
    if (!line.starts_with(sender) || number == std::string_view::npos)
        return std::nullopt;
    int code = 0;
    std::from_chars(line.data() + number + error.size(), line.data() + line.size(), code);
    const auto url = zef::FileURL::fromString(line.substr(line.rfind(' ') + 1));
    if (!code || !url)
        return std::nullopt;
    return LoadFailure{ url.path(), code == numberOf(zef::FileError::notAFolder), reasonOf(code) };
}

} // namespace tool

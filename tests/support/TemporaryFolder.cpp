// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t ownerMayAll = S_IRWXU;

void require(bool success, std::string_view what)
{
    if (!success)
        throw std::system_error(errno, std::generic_category(), std::string(what));
}

std::string defaultBase()
{
    const char* base = std::getenv("ZEF_TEST_FOLDER");
    return base && *base ? base : "/tmp";
}

void writeText(const std::string& path, std::string_view text, int flags)
{
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0644);
    require(file >= 0, path);
    const auto written = ::write(file, text.data(), text.size());
    ::close(file);
    require(written == static_cast<ssize_t>(text.size()), path);
}

std::vector<std::string> entries(int folder)
{
    std::vector<std::string> names;
    std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(folder), ::closedir);
    if (!stream)
        return names;
    while (const auto* entry = ::readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    return names;
}

// Relative to descriptors, so that paths of any length can be removed.
void removeTree(int parent, const std::string& name)
{
    if (::unlinkat(parent, name.c_str(), 0) == 0 || errno == ENOENT)
        return;
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const int folder = ::openat(
        parent, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fchmodat(parent, name.c_str(), ownerMayAll, 0);
    const int listing = ::openat(folder, ".", flags);
    if (listing >= 0) {
        for (const auto& entry : entries(listing)) // closes the descriptor
            removeTree(folder, entry);
    }
    ::close(folder);
    ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
}

zef::URLKind kindOf(const std::string& path)
{
    struct stat info;
    const bool isFolder = ::lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    return isFolder ? zef::URLKind::folder : zef::URLKind::file;
}

} // namespace

TemporaryFolder::TemporaryFolder()
    : TemporaryFolder(defaultBase())
{
}

TemporaryFolder::TemporaryFolder(const std::string& base)
{
    std::unique_ptr<char, void (*)(void*)> real(::realpath(base.c_str(), nullptr), std::free);
    require(real != nullptr, base);
    _path = std::string(real.get()) + "/zef-test.XXXXXX";
    require(::mkdtemp(_path.data()), _path);
}

TemporaryFolder::~TemporaryFolder()
{
    removeTree(AT_FDCWD, _path);
}

std::string TemporaryFolder::path(std::string_view name) const
{
    return name.empty() ? _path : _path + "/" + std::string(name);
}

zef::FileURL TemporaryFolder::url(std::string_view name) const
{
    return zef::FileURL::fromPath(path(name), zef::URLKind::file);
}

zef::FileURL TemporaryFolder::folderUrl(std::string_view name) const
{
    return zef::FileURL::fromPath(path(name), zef::URLKind::folder);
}

zef::FileURL TemporaryFolder::write(std::string_view name, std::string_view text)
{
    writeText(path(name), text, O_TRUNC);
    return url(name);
}

zef::FileURL TemporaryFolder::append(std::string_view name, std::string_view text)
{
    writeText(path(name), text, O_APPEND);
    return url(name);
}

zef::FileURL TemporaryFolder::makeFolder(std::string_view name)
{
    require(::mkdir(path(name).c_str(), 0755) == 0, name);
    return folderUrl(name);
}

zef::FileURL TemporaryFolder::link(std::string_view existing, std::string_view name)
{
    require(::link(path(existing).c_str(), path(name).c_str()) == 0, name);
    return url(name);
}

zef::FileURL TemporaryFolder::symlink(std::string_view target, std::string_view name)
{
    require(::symlink(std::string(target).c_str(), path(name).c_str()) == 0, name);
    return url(name);
}

zef::FileURL TemporaryFolder::rename(std::string_view from, std::string_view to)
{
    require(::rename(path(from).c_str(), path(to).c_str()) == 0, from);
    return zef::FileURL::fromPath(path(to), kindOf(path(to)));
}

void TemporaryFolder::exchange(std::string_view one, std::string_view other)
{
    const int result = ::renameat2(
        AT_FDCWD, path(one).c_str(), AT_FDCWD, path(other).c_str(), RENAME_EXCHANGE);
    require(result == 0, one);
}

void TemporaryFolder::remove(std::string_view name)
{
    require(exists(name), name);
    removeTree(AT_FDCWD, path(name));
    require(!exists(name), name);
}

void TemporaryFolder::chmod(std::string_view name, mode_t mode)
{
    require(::chmod(path(name).c_str(), mode) == 0, name);
}

void TemporaryFolder::setModificationTime(std::string_view name, time_t seconds)
{
    const struct timespec times[] = { { 0, UTIME_OMIT }, { seconds, 0 } };
    const int result = ::utimensat(AT_FDCWD, path(name).c_str(), times, AT_SYMLINK_NOFOLLOW);
    require(result == 0, name);
}

bool TemporaryFolder::exists(std::string_view name) const
{
    struct stat info;
    return ::lstat(path(name).c_str(), &info) == 0;
}

std::string TemporaryFolder::contents(std::string_view name) const
{
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path(name).c_str(), "re"), std::fclose);
    require(file != nullptr, name);
    std::string text;
    char buffer[4096];
    while (const auto count = std::fread(buffer, 1, sizeof buffer, file.get()))
        text.append(buffer, count);
    return text;
}

// SPDX-License-Identifier: MIT
#include "tests/support/FileItemFixture.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "tests/support/Privileges.h"

#include <system_error>

namespace {

bool haveEqualTimes(const zef::Stat& one, const zef::Stat& other)
{
    return one.modificationTime.tv_sec == other.modificationTime.tv_sec
        && one.modificationTime.tv_nsec / 1000 == other.modificationTime.tv_nsec / 1000;
}

} // namespace

FileItemFixture::FileItemFixture()
    : _prefix(folder.path())
{
    if (GetParam() == Spelling::direct)
        return;
    folder.symlink(folder.path(), "link");
    _prefix += "/link";
}

std::string FileItemFixture::path(std::string_view name) const
{
    return name.empty() ? _prefix : _prefix + "/" + std::string(name);
}

zef::FileURL FileItemFixture::url(std::string_view name) const
{
    return zef::FileURL::fromPath(path(name), zef::URLKind::file);
}

zef::FileURL FileItemFixture::folderURL(std::string_view name) const
{
    return zef::FileURL::fromPath(path(name), zef::URLKind::folder);
}

zef::Ref<ZEFFileItem> FileItemFixture::item(std::string_view name) const
{
    return ZEFFileItem::classObject.newFileItemForURL(url(name));
}

zef::Stat FileItemFixture::stat(std::string_view name) const
{
    zef::Stat result;
    const int error = zef::FileSystem::system().statLink(path(name).c_str(), result);
    if (error)
        throw std::system_error(error, std::generic_category(), path(name));
    return result;
}

void FileItemFixture::change(std::string_view name)
{
    const auto before = stat(name);
    do
        folder.append(name, "more");
    while (haveEqualTimes(stat(name), before));
}

bool FileItemFixture::writeWithNumberOf(const zef::Stat& deleted, std::string_view name)
{
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        folder.write(name);
        if (stat(name).inode == deleted.inode)
            return true;
        folder.remove(name);
    }
    return false;
}

bool FileItemFixture::findsEverything() const
{
    return zef::Locator::system().descriptorBudget() > 0 || mayOpenByHandle(folder.path());
}

std::string nameOfSpelling(const testing::TestParamInfo<Spelling>& info)
{
    return info.param == Spelling::direct ? "Direct" : "ThroughLink";
}

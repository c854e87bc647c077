// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntryCache.h"
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"
#include "ZEFFilesystemTools/Platform/Presentation/HiddenListCache.h"
#include "ZEFFilesystemTools/Platform/Volumes/AutomountPoints.h"

#include <string_view>
#include <utility>

namespace zef {

/// What Linux desktops have agreed upon: names and content of desktop entries, ".hidden" lists,
/// symbolic links. Any thread.
class LinuxFileInformation final : public FileInformation {
public:
    explicit LinuxFileInformation(AutomountPoints::MountReader reader = readMounts)
        : _automountPoints(std::move(reader))
    {
    }

    FileError copyContentType(const Object&, std::string& type) override;
    bool mayBeAliasFile(const Object&) override;
    FileError copyInvisibility(const Object&, bool& isInvisible) override;
    FileError copyInvisibilityAtURL(const FileURL& url, bool& isInvisible) override;
    std::string copyDisplayName(const Object&) override;
    std::string copyDisplayNameAtPath(const std::string& path) override;
    FileError resolveAliasFile(
        FSRef& ref, FileURL& url, bool& targetIsFolder, bool& wasAliased) override;
    FileError copyTargetOfURL(const FileURL& url, FSRef& ref, FileURL& target) override;

private:
    FileError copyTypeOfEntry(const Object&, std::string& type);
    std::string nameToShow(std::string_view name, const char* path, const Stat& stat);

    AutomountPoints _automountPoints;
    DesktopEntryCache _entries;
    HiddenListCache _hiddenLists;
};

} // namespace zef

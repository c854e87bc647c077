// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntryCache.h"
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"
#include "ZEFFilesystemTools/Platform/Presentation/HiddenListCache.h"
#include "ZEFFilesystemTools/Platform/Volumes/AutomountPoints.h"

#include <string_view>
#include <utility>

namespace zef {

/// Follows what Linux desktops have agreed upon: names and content of desktop entries, ".hidden"
/// lists, symbolic links. Any thread.
class LinuxFileInformation final : public FileInformation {
public:
    explicit LinuxFileInformation(AutomountPoints::MountReader reader = readMounts)
        : _automountPoints(std::move(reader))
    {
    }

    Expected<std::string> copyContentType(const Object&) override;
    bool mayBeAliasFile(const Object&) override;
    Expected<bool> copyInvisibility(const Object&) override;
    Expected<bool> copyInvisibilityAtURL(const FileURL& url) override;
    std::string copyDisplayName(const Object&) override;
    std::string copyDisplayNameAtPath(const std::string& path) override;
    Expected<Target> resolveAliasFile(const FSRef& ref, const FileURL& url) override;
    Expected<Target> copyTargetOfURL(const FileURL& url) override;

private:
    Expected<std::string> copyTypeOfEntry(const Object&);
    std::string nameToShow(std::string_view name, const char* path, const Stat& stat);

    AutomountPoints _automountPoints;
    DesktopEntryCache _entries;
    HiddenListCache _hiddenLists;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <functional>
#include <set>
#include <string>

namespace tool {

/// Notices the folders that a walk looks into but may not read: the library passes over them
/// without a word. Looks into the same folders as another filter. One walk at a time.
class DeniedFolders final : public ZEFDirectoryFilter {
public:
    /// `tell` is called with the path of each such folder once, on the thread of the walk.
    DeniedFolders(
        zef::Ref<ZEFDirectoryFilter> filter, std::function<void(const std::string&)> tell);

    /// The walk begins with these files (borrowed until it ends) and goes so many levels deep.
    void setWalk(const ZEFFileItemArray& files, std::ptrdiff_t depth);

    bool shouldIncludeFile(ZEFFileItem*) const override;
    zef::Ref<ZEFFileItem> trueDirectoryObjectForFile(ZEFFileItem*) const override;

private:
    ~DeniedFolders() override;

    bool isTooDeep(std::string path) const;
    void look(const std::string& path) const;

    zef::Ref<ZEFDirectoryFilter> _filter;
    std::function<void(const std::string&)> _tell;
    std::set<std::string> _beginnings;
    std::ptrdiff_t _depth = -1;
    mutable std::set<std::string> _told;
};

} // namespace tool

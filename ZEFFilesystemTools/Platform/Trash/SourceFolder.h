// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Folders/FolderAscent.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashProblem.h"

#include <cstdint>
#include <string>

namespace zef {

/// A folder that files are to be moved out of. One thread at a time.
class SourceFolder {
public:
    /// `path` may lead through links.
    explicit SourceFolder(std::string path);

    /// Opens the folder, for the first time or anew: then it has to be the same one. Once open it
    /// stays so until `close`. 0 or an errno value.
    [[nodiscard]] int open();
    void close();
    /// While it is open.
    int descriptor() const { return _folder->descriptor(); }

    /// What keeps files from being taken out of the folder, which is open; also looks at what is
    /// above it. What was found good once is not looked at again.
    TrashProblem examine();

    /// Whether only owners may take files out of it, and this process isn't the folder's.
    bool isOthersStickyFolder() const;

    const ObjectNumbers& numbers() const { return _numbers; }
    /// 0 if it isn't known.
    std::uint64_t mountID() const { return _mountID; }
    const FolderAscent& ascent() const { return _ascent; }

    /// The path without links of an entry.
    std::string pathOfEntry(std::string_view name) const;

private:
    std::string _path;
    Ref<ObjectDescriptor> _folder;
    ObjectNumbers _numbers;
    std::uint64_t _mountID = 0;
    FolderAscent _ascent;
    std::string _pathWithoutLinks;
    bool _isKnown = false;
    bool _isGood = false;
};

} // namespace zef

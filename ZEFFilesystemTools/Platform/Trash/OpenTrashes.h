// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Trash/OpenTrash.h"
#include "ZEFFilesystemTools/Platform/Trash/SourceFolder.h"

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace zef {

/// The trashes that one request needs, opened when they are first asked for. One thread at a time.
class OpenTrashes {
public:
    /// Finds out where the user's home trash is, or would be.
    OpenTrashes();

    /// The trash for files in `folder`, which is open and examined: a file goes there by a mere
    /// change of its path. Borrowed.
    Expected<OpenTrash*, TrashProblem> find(const SourceFolder& folder);

    /// Whether the way up leads through one of these trashes.
    bool isInTrash(const FolderAscent& ascent) const;

    /// Whether one of these trashes is the folder, or is in it.
    bool contains(const ObjectNumbers& folder) const;

    /// As `TrashInfoFolder::synchronise`, for all of them.
    [[nodiscard]] int synchronise();

private:
    using Volume = std::pair<std::uint64_t, std::uint32_t>; // mount and device

    void lookForHome();
    OpenTrash::Opened open(const SourceFolder& folder) const;
    bool isOnVolumeOfHome(const SourceFolder& folder) const;

    /// Empty if the user has no home folder.
    std::string _homePath;
    /// The way up from the home trash or, where there is none yet, from what is there of its path.
    FolderAscent _homeAscent;
    Volume _homeVolume;
    bool _hasHomeTrash = false;
    std::map<Volume, std::unique_ptr<OpenTrash>> _trashes;
};

} // namespace zef

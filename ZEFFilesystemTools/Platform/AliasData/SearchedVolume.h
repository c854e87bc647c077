// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasFolders.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasMatch.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zef {

/// How far the search for one object may go, on all volumes together.
struct AliasBudget {
    std::size_t entries;
    double secondsAtStart;
    double secondsAtEnd;

    /// Whether the entries or the time are used up.
    bool isUsedUp() const;
};

/// One mounted volume on which the object of an alias record is looked for. Paths on it have no
/// slash at their end, so "/" is the empty path. Links are not followed, other volumes that are
/// mounted on this one are left alone. One thread.
class SearchedVolume {
public:
    /// All are borrowed but the mount point and the numbers.
    SearchedVolume(AliasFolders& folders, AliasMatch& target, AliasBudget& budget,
        const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID);

    const AliasRecord& record() const { return _target.record(); }
    AliasBudget& budget() const { return _budget; }
    const std::string& mountPoint() const { return _mountPoint; }

    /// Whether the object itself is at `path`.
    bool lookAt(const std::string& path) const;

    /// Whether the object itself is in the folder at `path` that was indexed, under any name.
    bool lookIn(const std::string& path, const FolderIndex& index) const;

    /// Describes the folder at `path`; NO when that is none or isn't on the volume.
    bool statFolder(const std::string& path, Stat& stat) const;

    /// The names in the folder, at most `limit` of them unless more are known.
    Ref<const FolderIndex> index(
        const std::string& path, const Stat& stat, std::size_t limit) const;

private:
    AliasFolders& _folders;
    AliasMatch& _target;
    AliasBudget& _budget;
    std::string _mountPoint;
    std::uint32_t _device;
    std::uint64_t _mountID;
};

/// The path of the entry `name` of the folder at `path`.
std::string pathOfEntry(const std::string& path, std::string_view name);

} // namespace zef

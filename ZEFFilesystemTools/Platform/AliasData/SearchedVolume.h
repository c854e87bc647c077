// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasMatch.h"
#include "ZEFFilesystemTools/Platform/Folders/FolderIndexCache.h"
#include "ZEFFilesystemTools/Platform/Folders/SearchBudget.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zef {

/// One mounted volume on which the object of an alias record is looked for. Paths on it have no
/// slash at their end, so "/" is the empty path. Links are not followed, other volumes that are
/// mounted on this one are left alone. One thread.
class SearchedVolume {
public:
    /// All are borrowed but the mount point and the numbers.
    SearchedVolume(FolderIndexCache& indexes, AliasMatch& match, SearchBudget& budget,
        const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID);

    const AliasRecord& record() const { return _match.record(); }
    SearchBudget& budget() const { return _budget; }
    const std::string& mountPoint() const { return _mountPoint; }

    /// Whether the object itself is at `path`.
    bool lookAt(const std::string& path) const;

    /// Whether the object itself is in the folder at `path` that was indexed, under any name.
    bool lookIn(const std::string& path, const FolderIndex& index) const;

    /// Describes the folder at `path`; none if that is not a folder or not on the volume.
    std::optional<Stat> statFolder(const std::string& path) const;

    /// The names in the folder as they were at some moment of the search, at most `limit` of them
    /// unless more are known; null if it can't be read.
    Ref<const FolderIndex> index(
        const std::string& path, const Stat& stat, std::size_t limit) const;

private:
    FolderIndexCache& _indexes;
    AliasMatch& _match;
    SearchBudget& _budget;
    std::string _mountPoint;
    std::uint32_t _device;
    std::uint64_t _mountID;
};

/// The path of the entry `name` of the folder at `path`.
std::string pathOfEntry(const std::string& path, std::string_view name);

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/SearchedVolume.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace zef {

/// Searches folders for the object of an alias record, breadth first and no folder twice, as long
/// as the budget lasts. One thread.
class BreadthFirstSearch {
public:
    /// The volume is borrowed.
    explicit BreadthFirstSearch(const SearchedVolume& volume)
        : _volume(volume)
    {
    }

    /// Searches everything below `folder`, whose own entries the budget doesn't pay for, then
    /// everything below each folder above it, up to the mount point.
    bool searchAround(std::string folder);

private:
    struct Folder {
        std::size_t parent;
        std::string name;
    };

    bool searchBelow(const std::string& folder);
    bool searchFolder(const std::string& path, std::size_t number);
    std::string pathOf(std::size_t number) const;

    const SearchedVolume& _volume;
    std::string _freeFolder;
    std::unordered_set<std::uint64_t> _seen;
    /// Those that wait after those that were searched; the first one's name is its path.
    std::vector<Folder> _folders;
};

} // namespace zef

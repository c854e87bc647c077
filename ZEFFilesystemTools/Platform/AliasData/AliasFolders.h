// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Folders/FolderIndex.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <unordered_map>

namespace zef {

/// Indexes the folders that are searched for the objects of alias data, and keeps what was seen for
/// a moment: many references whose files are gone then search the same folders at the cost of a
/// look at each. Keeps 100,000 entries or the last folder. Any thread; no lock is held while a
/// folder is read.
class AliasFolders {
public:
    /// The names in the folder at `path` (a link to one is refused), which `folder` describes; null
    /// when it can't be read. The first `limit` entries, or more if they are known anyway. What is
    /// kept serves as long as the folder shows no change; if a change may not show and the folder
    /// was read before `secondsAtStart`, it is read again.
    Ref<const FolderIndex> index(
        const char* path, const Stat& folder, std::size_t limit, double secondsAtStart);

private:
    using Key = std::uint64_t;

    Ref<const FolderIndex> find(const Stat& folder, std::size_t limit, double secondsAtStart);
    void keep(const Stat& folder, Ref<const FolderIndex> index);
    void forgetOld();
    void forgetFirst();

    std::mutex _mutex;
    /// By inode number; of the folders of different devices with one number the last one read.
    std::unordered_map<Key, Ref<const FolderIndex>> _indexes;
    /// The last one read is the last.
    std::deque<std::pair<Key, Ref<const FolderIndex>>> _order;
    std::size_t _entries = 0;
};

} // namespace zef

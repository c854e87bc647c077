// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_map>
#include <vector>

namespace zef {

/// A folder, and where it was last seen, in the spelling of whoever saw it there (may be null).
struct KnownFolder {
    FSRef ref;
    FileURL url;
};

/// The folders that somebody retains, with their uses counted. Nothing in it is verified. Not
/// synchronised.
class KnownFolders {
public:
    /// Counts one more use of the folder; `ref` and `url` replace what was known of it.
    void enter(const FSRef& ref, const FileURL& url);
    /// Counts one use less; true if that was the last one, false also for a folder that isn't
    /// known.
    bool leave(const FSRef& ref);

    /// The folder was seen at `url`; does nothing for one that isn't known.
    void learn(const FSRef& ref, const FileURL& url);

    /// The folder with these numbers, borrowed until the next change; null if it isn't known.
    const KnownFolder* find(const ObjectNumbers&) const;

    /// Those on one device, the most recently entered or moved ones first, at most `limit`.
    std::vector<KnownFolder> recentOnDevice(std::uint32_t device, std::size_t limit) const;

    std::size_t count() const { return _folders.size(); }

private:
    struct Entry {
        KnownFolder folder;
        std::uint32_t uses = 0;
    };
    using Iterator = std::list<Entry>::iterator;

    std::list<Entry> _folders;
    std::unordered_map<ObjectNumbers, Iterator, ObjectNumbers::Hash> _index;
};

} // namespace zef

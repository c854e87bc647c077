// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include <cstdint>
#include <unordered_map>

namespace tool {

/// One watched folder, and where it and each file in it were when they were last shown.
class WatchedFolder {
public:
    explicit WatchedFolder(ZEFDirectorySubscription&);

    ZEFDirectorySubscription& subscription() const { return *_subscription; }
    bool isItself(const ZEFFileItem& item) const;
    /// Whether there is still something to watch.
    bool isAlive() const;
    /// How many files are known to be in the folder.
    std::size_t fileCount() const { return _locations.size() - 1; }

    /// Where the item was; null if it was not known.
    zef::FileURL lastLocation(const ZEFFileItem&) const;
    /// Takes the changes over, after they were shown.
    void noteChanges(const ZEFChangeArray&);

private:
    zef::Ref<ZEFDirectorySubscription> _subscription;
    std::uint64_t _ownNumber = 0;
    std::unordered_map<std::uint64_t, zef::FileURL> _locations;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace zef {

/// What one search for an object may still spend. One thread.
struct SearchBudget {
    /// Folders and entries that may still be looked at.
    std::size_t folders = std::numeric_limits<std::size_t>::max();
    std::size_t entries;
    /// How long the search may take.
    double seconds = std::numeric_limits<double>::infinity();
    /// On the clock that never goes backwards.
    double secondsAtStart = Clock::shared().monotonicSeconds();

    bool isUsedUp() const
    {
        return folders == 0 || entries == 0
            || Clock::shared().monotonicSeconds() >= secondsAtStart + seconds;
    }

    /// Pays for one folder with so many entries.
    void pay(std::size_t entriesOfFolder)
    {
        folders -= std::min<std::size_t>(folders, 1);
        entries -= std::min(entries, entriesOfFolder);
    }
};

} // namespace zef

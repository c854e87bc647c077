// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileStamps.h"

#include <cstdint>
#include <memory>

namespace zef {

/// What a vnode notifier keeps of one open token.
struct WatchToken {
    enum class Means : std::uint8_t {
        /// The token is not open.
        none,
        /// Each poll looks at the object and compares.
        stamps,
        /// Events of a watch that may be on another object than it should.
        unverifiedWatch,
        /// Events of a watch on the object.
        watch,
    };

    Means means = Means::none;

    /// Something happened since the last poll.
    bool isMarked = false;

    /// The more careful one until it is known.
    StampClock stampClock = StampClock::otherHosts;

    /// How often the slot was used before.
    std::uint8_t generation = 0;

    /// The watch whose events count, -1 for none.
    int watch = -1;

    /// The neighbours among the tokens of one watch, or among the free slots; 0 at the ends.
    std::uint32_t next = 0;
    std::uint32_t previous = 0;

    /// What the last poll by stamps saw; null before the first one.
    std::unique_ptr<FileStamps> stamps;
};

} // namespace zef

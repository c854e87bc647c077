// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileStamps.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace zef {

/// What the notifier keeps of one open token.
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

/// The tokens of the notifier and the watches that they share. One thread at a time.
///
/// A number that was closed is given out again only after 100,000 others; until then it counts as
/// not open. Tokens that are borrowed stay in place until the next `add`. Functions that may leave
/// a watch without tokens return it, to be ended by the caller, and -1 otherwise.
class WatchTokens {
public:
    WatchTokens();

    /// A new token, which compares stamps and has seen nothing; greater than 0. 0 if there are
    /// 16,777,215 already.
    [[nodiscard]] int add();

    /// The open token with this number, borrowed; null if it is not open.
    WatchToken* find(int number);

    int remove(int number);

    /// Makes the token one of `watch`, unverified.
    int setWatch(WatchToken&, int watch);

    /// Makes the token compare with `stamps`.
    int setStamps(WatchToken&, const FileStamps& stamps, StampClock);

    bool isWatched(int watch) const { return _firstTokens.contains(watch); }
    std::size_t watchCount() const { return _firstTokens.size(); }

    /// Something happened to the object of this watch.
    void mark(int watch);

    /// The watch is gone: its tokens are marked and compare stamps from now on.
    void endWatch(int watch);

    /// Events were lost, perhaps also the ends of watches: every token of a watch is marked and has
    /// to be verified anew.
    void doubtEveryWatch();

private:
    std::uint32_t indexOf(const WatchToken&) const;
    std::uint32_t takeSlot();
    void giveSlotBack(std::uint32_t index);
    int leaveWatch(WatchToken&);

    /// The first one is never used: 0 is not a token.
    std::vector<WatchToken> _slots;
    std::uint32_t _firstFree = 0;
    std::uint32_t _lastFree = 0;
    std::size_t _freeCount = 0;
    std::unordered_map<int, std::uint32_t> _firstTokens;
};

} // namespace zef

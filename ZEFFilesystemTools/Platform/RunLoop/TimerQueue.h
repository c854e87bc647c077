// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include <chrono>
#include <cstdint>
#include <set>

namespace zef {

/// The timers of one run loop in the order in which they fire: by due time, then by the order in
/// which they were added. Part of the run loop; belongs to its thread and never calls out.
class TimerQueue {
    struct FiresBefore {
        using is_transparent = void;
        bool operator()(const Ref<Timer>& left, const Ref<Timer>& right) const;
        bool operator()(const Ref<Timer>& left, const Timer& right) const;
        bool operator()(const Timer& left, const Ref<Timer>& right) const;
    };
    using Timers = std::set<Ref<Timer>, FiresBefore>;

public:
    /// A timer that was taken out of the queue; owns it, and the memory to put it back.
    using Entry = Timers::node_type;

    /// Adds `timer` for its first firing.
    void add(Ref<Timer>, TimerModes, std::chrono::nanoseconds dueTime);

    /// Takes `timer` out; an empty entry when it is not in the queue.
    Entry take(Timer&);

    /// Puts a taken timer back for its next firing.
    void putBack(Entry, std::chrono::nanoseconds dueTime);

    /// The timer that fires next in `mode`, borrowed; null when there is none.
    Timer* first(RunLoopMode) const;

    /// When a timer is due, and the number that it was added under.
    static std::chrono::nanoseconds dueTime(const Timer& timer) { return timer._dueTime; }
    static std::uint64_t order(const Timer& timer) { return timer._order; }

    /// The number that the next timer will be added under; grows by 1 with each.
    std::uint64_t nextOrder() const { return _nextOrder; }

    /// Some timer of any mode, borrowed; null when the queue is empty.
    Timer* any() const;

private:
    Timers& timersLike(const Timer&);

    Timers _defaultModeTimers;
    Timers _commonTimers;
    std::uint64_t _nextOrder = 0;
};

} // namespace zef

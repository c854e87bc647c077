// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <chrono>
#include <cstdint>
#include <functional>

namespace zef {

class RunLoop;

/// Whether a timer fires once or again and again.
enum class Repeats { no, yes };

/// Calls its action when its time has come, on the thread of the run loop that it was added to.
///
/// The run loop keeps a timer alive until it is invalidated; a one-shot timer is invalidated just
/// before its action is called. What the action's closure owns is let go when the timer is
/// invalidated, or when its running action has returned. A timer never fires inside its own action:
/// firings that fall due meanwhile are dropped, as are those that a busy thread missed, and the
/// times of the later ones don't shift. Belongs to its run loop's thread.
class ZEF_EXPORT Timer final : public ZEFObject {
public:
    using Action = std::function<void(Timer&)>;

    static const Class classObject;
    const Class& objectClass() const override;

    /// A timer that first fires `firstDelay` seconds after it is added to a run loop and then, if
    /// it repeats, every `interval` seconds. Intervals that are not positive count as 0.0001
    /// seconds; a first delay that is not positive means the next pass. Delays that no process
    /// lives to see (infinity, say) mean never.
    Timer(double firstDelay, double interval, Repeats, Action);

    /// Stops the timer for good and lets go of its action. Harmless when it is invalid already.
    void invalidate();
    /// Whether it is going to fire, or would once it is added to a run loop.
    bool isValid() const { return _valid; }

    /// Seconds between two firings.
    double interval() const { return _interval; }
    /// Seconds between being added and the first firing.
    double firstDelay() const { return _firstDelay; }
    bool repeats() const { return _repeats == Repeats::yes; }

private:
    friend class RunLoop;
    friend class TimerQueue;

    double _firstDelay;
    double _interval;
    Repeats _repeats;
    Action _action;

    // The run loop's notes on a timer that was added to it.
    RunLoop* _runLoop = nullptr;
    std::chrono::nanoseconds _dueTime{ 0 };
    std::uint64_t _order = 0;
    bool _firesInAllModes = false;
    bool _valid = true;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Clock.h"
#include "ZEFFilesystemTools/Platform/Timer.h"

#include <functional>
#include <memory>

namespace zef {

/// What a run loop is busy with; timers fire only in the modes that they were added for.
enum class RunLoopMode { defaultMode, eventTracking, modal };

/// The modes that a timer fires in: the default mode alone, or all of them.
enum class TimerModes { defaultMode, common };

/// The timers of one thread, driven by `run` or by any foreign main loop that watches one
/// descriptor: whenever `descriptor()` is readable, call `perform()`.
///
/// Everything but `post` belongs to the loop's thread. Callbacks may add and invalidate timers,
/// change the mode and call `perform` or `run` again.
class RunLoop {
public:
    /// The calling thread's loop, made at the first call; lives until the thread ends.
    static RunLoop& current();

    /// A loop that reads the time from `clock` (borrowed), so that a test can step it.
    explicit RunLoop(Clock& clock = Clock::shared());
    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// A descriptor (owned by the loop) that is readable while there is something to perform in the
    /// current mode; for poll(2) and its kin. -1 when the system gave none: then call `perform` at
    /// least every `secondsUntilNextTimer`.
    int descriptor() const;

    /// Seconds until the next timer of the current mode is due, 0 when something is due already,
    /// infinity when nothing is scheduled.
    double secondsUntilNextTimer() const;

    /// One pass: runs what was posted, then fires each timer that is due in the current mode, once,
    /// in the order of due times. Never waits.
    void perform();

    /// Passes in `mode` for `seconds`, waiting in between, or until `stop`.
    void run(RunLoopMode mode, double seconds);

    /// Ends the innermost `run` after the pass that it is in.
    void stop();

    RunLoopMode mode() const;
    /// For a host's nested loop: timers of other modes pause until `popMode`.
    void pushMode(RunLoopMode);
    void popMode();

    /// Adds a valid timer and keeps it alive until it is invalidated.
    void addTimer(Ref<Timer>, TimerModes = TimerModes::defaultMode);

    /// Makes a timer and adds it in the default mode; a one-shot timer fires after `interval`.
    Ref<Timer> scheduleTimer(double interval, Repeats, Timer::Action);

    /// Runs `action` in the loop's next pass, in any mode. Any thread, while the loop lives.
    void post(std::function<void()> action);

private:
    friend class Timer;
    void removeTimer(Timer&);

    class Implementation;
    std::unique_ptr<Implementation> _implementation;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

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
/// Everything but `post` belongs to the loop's thread, which is the one that uses it first; debug
/// builds assert it. Callbacks may add and invalidate timers, change the mode and call `perform` or
/// `run` again, but not end the loop's life. An exception that a callback lets out passes through
/// `perform` and `run`; what was left of the pass is done in the next one. Nothing survives
/// fork(2): a child must not use its parent's loops.
class ZEF_EXPORT RunLoop {
public:
    /// The calling thread's loop, made at the first call; lives until the thread ends, after the
    /// thread's own thread_local objects. The main thread's is never destroyed.
    static RunLoop& current();

    /// Puts `replacement` (borrowed; must live until the next call) in the place of the calling
    /// thread's loop, for tests; null gives the thread's own one back.
    static void replaceCurrent(RunLoop* replacement);

    /// A loop that reads the time from `clock` (borrowed), so that a test can step it.
    explicit RunLoop(Clock& clock = Clock::shared());

    /// Invalidates the timers and drops what was posted and not run.
    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// A descriptor (owned by the loop, made at the first call) that is readable while there is
    /// something to perform in the current mode; for poll(2) and its kin, edge-triggered ones too.
    /// -1 while the system gives none: then call `perform` at least every `secondsUntilNextTimer`.
    /// When the clock is not the system's, a step of it shows after the next call or pass.
    int descriptor() const;

    /// Seconds until the next timer of the current mode is due, 0 when something is due or posted
    /// already, infinity when nothing is scheduled.
    double secondsUntilNextTimer() const;

    /// One pass: runs what was posted, then fires each timer that is due in the current mode, once,
    /// in the order of due times. What is posted, added or falls due during the pass waits for the
    /// next one. Never waits.
    void perform();

    /// Passes in `mode` for `seconds`, waiting in between, or until `stop`; at least one pass. The
    /// seconds count by the loop's clock or the system's, whichever is through first: a clock that
    /// nobody steps ends no run early and hangs none.
    void run(RunLoopMode mode, double seconds);

    /// Ends the innermost `run` after the pass that it is in; nothing when none is under way.
    void stop();

    RunLoopMode mode() const;
    /// For a host's nested loop: timers of other modes pause until `popMode`.
    void pushMode(RunLoopMode);
    /// Back to the mode before the latest `pushMode`.
    void popMode();

    /// Adds a valid timer and keeps it alive until it is invalidated. Null and an invalid timer do
    /// nothing; a timer belongs to one loop, once.
    void addTimer(Ref<Timer>, TimerModes = TimerModes::defaultMode);

    /// Makes a timer and adds it in the default mode; a one-shot timer fires after `interval`.
    Ref<Timer> scheduleTimer(double interval, Repeats, Timer::Action);

    /// Runs `action` in the loop's next pass, in any mode, after what was posted before. Any
    /// thread, while the loop lives.
    void post(std::function<void()> action);

private:
    friend class Timer;
    void removeTimer(Timer&);

    class Implementation;
    /// What is inside; asserts that the caller is on the loop's thread.
    Implementation& implementation() const;

    std::unique_ptr<Implementation> _implementation;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/RunLoop/TimerQueue.h"
#include "ZEFFilesystemTools/Platform/RunLoop/WakeUpDescriptor.h"
#include "ZEFFilesystemTools/Platform/Threads/ThreadChecker.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace zef {

/// The private state of a run loop. Times are whole nanoseconds of the loop's clock, so that a
/// timer's grid never drifts.
class ZEF_INTERNAL RunLoop::Implementation {
public:
    Implementation(RunLoop&, Clock&);

    /// Invalidates the timers and drops what was posted, while the loop is still whole.
    void close();

    int descriptor();

    /// 0 when something is due or posted, `max` when nothing is scheduled.
    std::chrono::nanoseconds untilNextTimer();

    void perform();
    void run(RunLoopMode, std::chrono::nanoseconds duration);
    void stop();

    RunLoopMode mode() const { return _modes.back(); }
    void pushMode(RunLoopMode);
    void popMode();

    void addTimer(Ref<Timer>, TimerModes);
    void removeTimer(Timer&);
    void post(std::function<void()>);

    /// Seconds as the loop counts them: 0 for what is not positive, more than a century for never;
    /// two such spans still add up without overflow.
    static std::chrono::nanoseconds toNanoseconds(double seconds);

    [[no_unique_address]] ThreadChecker threadChecker;

private:
    class Firing;
    class Pass;
    class Run;

    static std::chrono::nanoseconds timeOf(Clock&);
    static std::chrono::nanoseconds systemNow();
    std::chrono::nanoseconds now() const;
    bool openDescriptor();

    /// Keeps the descriptor in step with the first timer of the current mode. Done before every
    /// call-out too, because a host's nested loop may watch the descriptor in there.
    void arm();
    void setTimerDue(bool);
    void wait(std::chrono::nanoseconds limit);

    /// The next timer, or posted action, that is this pass's business; null when it is through.
    Timer* dueTimer(const Pass&) const;
    std::function<void()> takePosted(const Pass&);

    RunLoop& _runLoop;
    Clock& _clock;
    const bool _clockIsSystem;
    bool _closing = false;
    // Whether `_wakeUp` is signalled for a timer that is due already.
    bool _timerDue = false;
    std::vector<RunLoopMode> _modes{ RunLoopMode::defaultMode };
    TimerQueue _timers;
    Run* _innermostRun = nullptr;

    // Guards `_posted`, `_postedCount` and, for the threads that post, `_wakeUp`, which is
    // signalled as long as `_posted` is not empty. A poster touches nothing after it has unlocked:
    // what it posted may end the loop's life.
    std::mutex _postedMutex;
    std::condition_variable _postedCondition;
    std::deque<std::function<void()>> _posted;
    std::uint64_t _postedCount = 0;
    WakeUpDescriptor _wakeUp;
};

} // namespace zef

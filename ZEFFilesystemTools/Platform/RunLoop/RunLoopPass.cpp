// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoopImplementation.h"

#include <algorithm>
#include <utility>

namespace zef {
namespace {

using std::chrono::nanoseconds;

// The first moment after `now` on the grid of a timer that was due at `dueTime`.
nanoseconds nextOnGrid(nanoseconds dueTime, nanoseconds interval, nanoseconds now)
{
    if (dueTime > now)
        return dueTime + interval;
    return dueTime + interval * ((now - dueTime) / interval + 1);
}

} // namespace

/// One call of `perform`: knows what is its business and what is the next pass's.
class RunLoop::Implementation::Pass {
public:
    explicit Pass(Implementation& loop)
        : startTime(loop.now())
        , timerOrderLimit(loop._timers.nextOrder())
        , _loop(loop)
    {
        std::lock_guard guard(loop._postedMutex);
        postedLimit = loop._postedCount;
    }

    /// Wakes once more for what is left, since an edge-triggered watcher took note of the
    /// descriptor only before the pass.
    ~Pass()
    {
        _loop.arm();
        std::lock_guard guard(_loop._postedMutex);
        if (_loop._timerDue)
            _loop._wakeUp.signal(WakeUpDescriptor::Reason::timerDue);
        if (!_loop._posted.empty())
            _loop._wakeUp.signal(WakeUpDescriptor::Reason::actionPosted);
    }

    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

    const nanoseconds startTime;
    const std::uint64_t timerOrderLimit;
    std::uint64_t postedLimit;

private:
    Implementation& _loop;
};

/// One firing of a timer. The timer is out of the queue meanwhile, so that no pass inside its
/// action fires it again, and its action is held here, so that invalidating it doesn't destroy what
/// runs.
class RunLoop::Implementation::Firing {
public:
    Firing(Implementation& loop, Timer& timer)
        : _loop(loop)
        , _timer(&timer)
        , _entry(loop._timers.take(timer))
        , _action(std::exchange(timer._action, nullptr))
    {
        if (!timer.repeats()) {
            timer._valid = false;
            timer._runLoop = nullptr;
        }
        loop.arm();
    }

    ~Firing()
    {
        if (!_timer->isValid())
            return;
        const auto interval = std::max(toNanoseconds(_timer->interval()), nanoseconds(1));
        _timer->_action = std::move(_action);
        _loop._timers.putBack(
            std::move(_entry), nextOnGrid(_timer->_dueTime, interval, _loop.now()));
        _loop.arm();
    }

    Firing(const Firing&) = delete;
    Firing& operator=(const Firing&) = delete;

    void callAction() const
    {
        if (_action)
            _action(*_timer);
    }

private:
    Implementation& _loop;
    Ref<Timer> _timer;
    TimerQueue::Entry _entry;
    Timer::Action _action;
};

std::function<void()> RunLoop::Implementation::takePosted(const Pass& pass)
{
    std::lock_guard guard(_postedMutex);
    if (_posted.empty() || _postedCount - _posted.size() >= pass.postedLimit)
        return nullptr;
    auto action = std::move(_posted.front());
    _posted.pop_front();
    if (_posted.empty())
        _wakeUp.clear(WakeUpDescriptor::Reason::actionPosted);
    return action;
}

// A timer that was added during the pass is due after all older ones, as the clock never goes back.
Timer* RunLoop::Implementation::dueTimer(const Pass& pass) const
{
    auto* timer = _timers.first(mode());
    const auto isDue = timer && timer->_dueTime <= pass.startTime
        && timer->_order < pass.timerOrderLimit;
    return isDue ? timer : nullptr;
}

void RunLoop::Implementation::perform()
{
    const Pass pass(*this);
    while (const auto action = takePosted(pass))
        action();
    while (auto* timer = dueTimer(pass))
        Firing(*this, *timer).callAction();
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoopImplementation.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace zef {
namespace {

using std::chrono::nanoseconds;

double toSeconds(nanoseconds time)
{
    return std::chrono::duration<double>(time).count();
}

} // namespace

RunLoop::Implementation::Implementation(RunLoop& runLoop, Clock& clock)
    : _runLoop(runLoop)
    , _clock(clock)
    , _clockIsSystem(&clock == &Clock::system())
{
}

nanoseconds RunLoop::Implementation::toNanoseconds(double seconds)
{
    constexpr double longest = 4e9;
    if (!(seconds > 0))
        return nanoseconds(0);
    return nanoseconds(std::llround(std::min(seconds, longest) * 1e9));
}

nanoseconds RunLoop::Implementation::now() const
{
    return timeOf(_clock);
}

nanoseconds RunLoop::Implementation::systemNow()
{
    return timeOf(Clock::system());
}

nanoseconds RunLoop::Implementation::timeOf(Clock& clock)
{
    return toNanoseconds(clock.monotonicSeconds());
}

/// One call of `run`: its mode, and whether it was told to stop.
class RunLoop::Implementation::Run {
public:
    Run(Implementation& loop, RunLoopMode mode)
        : _loop(loop)
        , _modeCount(loop._modes.size())
        , _outer(std::exchange(loop._innermostRun, this))
    {
        loop.pushMode(mode);
    }

    ~Run()
    {
        _loop._innermostRun = _outer;
        _loop._modes.resize(_modeCount);
        _loop.arm();
    }

    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    bool stopped = false;

private:
    Implementation& _loop;
    std::size_t _modeCount;
    Run* _outer;
};

// What the closures own may call back, so they are let go while the loop is whole.
void RunLoop::Implementation::close()
{
    _closing = true;
    while (auto* timer = _timers.any())
        timer->invalidate();
    std::deque<std::function<void()>> dropped;
    std::lock_guard guard(_postedMutex);
    dropped.swap(_posted);
}

bool RunLoop::Implementation::openDescriptor()
{
    if (_wakeUp.isOpen())
        return true;
    std::lock_guard guard(_postedMutex);
    if (!_wakeUp.open())
        return false;
    if (!_posted.empty())
        _wakeUp.signal(WakeUpDescriptor::Reason::actionPosted);
    return true;
}

int RunLoop::Implementation::descriptor()
{
    if (openDescriptor())
        arm();
    return _wakeUp.descriptor();
}

void RunLoop::Implementation::arm()
{
    if (!_wakeUp.isOpen())
        return;
    const auto* timer = _timers.first(mode());
    const auto delay = timer ? timer->_dueTime - now() : nanoseconds::max();
    if (delay <= nanoseconds(0))
        return setTimerDue(true);
    setTimerDue(false);
    if (!timer)
        return _wakeUp.arm(std::nullopt);
    _wakeUp.arm(_clockIsSystem ? timer->_dueTime : systemNow() + delay);
}

void RunLoop::Implementation::setTimerDue(bool isDue)
{
    if (_timerDue == isDue)
        return;
    _timerDue = isDue;
    std::lock_guard guard(_postedMutex);
    if (isDue)
        _wakeUp.signal(WakeUpDescriptor::Reason::timerDue);
    else
        _wakeUp.clear(WakeUpDescriptor::Reason::timerDue);
}

nanoseconds RunLoop::Implementation::untilNextTimer()
{
    {
        std::lock_guard guard(_postedMutex);
        if (!_posted.empty())
            return nanoseconds(0);
    }
    const auto* timer = _timers.first(mode());
    return timer ? std::max(timer->_dueTime - now(), nanoseconds(0)) : nanoseconds::max();
}

void RunLoop::Implementation::wait(nanoseconds limit)
{
    if (openDescriptor()) {
        arm();
        return _wakeUp.wait(limit);
    }
    const auto delay = std::min(limit, untilNextTimer());
    std::unique_lock lock(_postedMutex);
    _postedCondition.wait_for(lock, delay, [this] { return !_posted.empty(); });
}

void RunLoop::Implementation::run(RunLoopMode mode, nanoseconds duration)
{
    const Run run(*this, mode);
    const auto deadline = now() + duration;
    const auto systemDeadline = systemNow() + duration;
    for (;;) {
        perform();
        const auto remaining = std::min(deadline - now(), systemDeadline - systemNow());
        if (run.stopped || remaining <= nanoseconds(0))
            return;
        wait(remaining);
    }
}

void RunLoop::Implementation::stop()
{
    if (_innermostRun)
        _innermostRun->stopped = true;
}

void RunLoop::Implementation::pushMode(RunLoopMode mode)
{
    _modes.push_back(mode);
    arm();
}

void RunLoop::Implementation::popMode()
{
    assert(_modes.size() > 1 && "a mode must be pushed before it is popped");
    if (_modes.size() > 1)
        _modes.pop_back();
    arm();
}

void RunLoop::Implementation::addTimer(Ref<Timer> timer, TimerModes modes)
{
    if (!timer || !timer->isValid())
        return;
    assert(!timer->_runLoop && "a timer is added to one run loop, once");
    if (timer->_runLoop)
        return;
    if (_closing)
        return timer->invalidate();

    timer->_runLoop = &_runLoop;
    const auto dueTime = now() + toNanoseconds(timer->firstDelay());
    _timers.add(std::move(timer), modes, dueTime);
    arm();
}

void RunLoop::Implementation::removeTimer(Timer& timer)
{
    const auto entry = _timers.take(timer);
    arm();
}

void RunLoop::Implementation::post(std::function<void()> action)
{
    if (!action)
        return;
    std::lock_guard guard(_postedMutex);
    ++_postedCount;
    _posted.push_back(std::move(action));
    if (_posted.size() == 1) {
        _wakeUp.signal(WakeUpDescriptor::Reason::actionPosted);
        _postedCondition.notify_one();
    }
}

RunLoop::RunLoop(Clock& clock)
    : _implementation(std::make_unique<Implementation>(*this, clock))
{
}

RunLoop::Implementation& RunLoop::implementation() const
{
    assert(_implementation->threadChecker.isOnItsThread());
    return *_implementation;
}

RunLoop::~RunLoop()
{
    implementation().close();
}

int RunLoop::descriptor() const
{
    return implementation().descriptor();
}

double RunLoop::secondsUntilNextTimer() const
{
    const auto delay = implementation().untilNextTimer();
    return delay == nanoseconds::max() ? std::numeric_limits<double>::infinity() : toSeconds(delay);
}

void RunLoop::perform()
{
    implementation().perform();
}

void RunLoop::run(RunLoopMode mode, double seconds)
{
    implementation().run(mode, Implementation::toNanoseconds(seconds));
}

void RunLoop::stop()
{
    implementation().stop();
}

RunLoopMode RunLoop::mode() const
{
    return implementation().mode();
}

void RunLoop::pushMode(RunLoopMode mode)
{
    implementation().pushMode(mode);
}

void RunLoop::popMode()
{
    implementation().popMode();
}

void RunLoop::addTimer(Ref<Timer> timer, TimerModes modes)
{
    implementation().addTimer(std::move(timer), modes);
}

Ref<Timer> RunLoop::scheduleTimer(double interval, Repeats repeats, Timer::Action action)
{
    auto timer = makeRef<Timer>(interval, interval, repeats, std::move(action));
    addTimer(timer);
    return timer;
}

void RunLoop::post(std::function<void()> action)
{
    _implementation->post(std::move(action));
}

void RunLoop::removeTimer(Timer& timer)
{
    implementation().removeTimer(timer);
}

} // namespace zef

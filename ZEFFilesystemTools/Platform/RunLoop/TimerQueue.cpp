// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/TimerQueue.h"

#include <utility>

namespace zef {
namespace {

bool firesBefore(const Timer& left, const Timer& right)
{
    return std::pair(TimerQueue::dueTime(left), TimerQueue::order(left))
        < std::pair(TimerQueue::dueTime(right), TimerQueue::order(right));
}

template <typename Timers> Timer* firstOf(const Timers& timers)
{
    return timers.empty() ? nullptr : timers.begin()->get();
}

} // namespace

bool TimerQueue::FiresBefore::operator()(const Ref<Timer>& left, const Ref<Timer>& right) const
{
    return firesBefore(*left, *right);
}

bool TimerQueue::FiresBefore::operator()(const Ref<Timer>& left, const Timer& right) const
{
    return firesBefore(*left, right);
}

bool TimerQueue::FiresBefore::operator()(const Timer& left, const Ref<Timer>& right) const
{
    return firesBefore(left, *right);
}

void TimerQueue::add(Ref<Timer> timer, TimerModes modes, std::chrono::nanoseconds dueTime)
{
    timer->_firesInAllModes = modes == TimerModes::common;
    timer->_order = _nextOrder++;
    timer->_dueTime = dueTime;
    auto& timers = timersLike(*timer);
    timers.insert(std::move(timer));
}

TimerQueue::Entry TimerQueue::take(Timer& timer)
{
    auto& timers = timersLike(timer);
    const auto found = timers.find(timer);
    return found == timers.end() ? Entry() : timers.extract(found);
}

void TimerQueue::putBack(Entry entry, std::chrono::nanoseconds dueTime)
{
    auto& timer = *entry.value();
    timer._dueTime = dueTime;
    timersLike(timer).insert(std::move(entry));
}

Timer* TimerQueue::first(RunLoopMode mode) const
{
    auto* common = firstOf(_commonTimers);
    if (mode != RunLoopMode::defaultMode)
        return common;
    auto* defaultMode = firstOf(_defaultModeTimers);
    if (!common || !defaultMode)
        return common ? common : defaultMode;
    return firesBefore(*common, *defaultMode) ? common : defaultMode;
}

Timer* TimerQueue::any() const
{
    auto* common = firstOf(_commonTimers);
    return common ? common : firstOf(_defaultModeTimers);
}

TimerQueue::Timers& TimerQueue::timersLike(const Timer& timer)
{
    return timer._firesInAllModes ? _commonTimers : _defaultModeTimers;
}

} // namespace zef

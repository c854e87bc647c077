// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

namespace zef {
namespace {

constexpr double shortestInterval = 0.0001;

// Both are false for NaN, which counts as not positive.
double positiveOr(double seconds, double substitute)
{
    return seconds > 0 ? seconds : substitute;
}

} // namespace

const Class Timer::classObject{ "Timer", &ZEFObject::classObject };

const Class& Timer::objectClass() const
{
    return classObject;
}

Timer::Timer(double firstDelay, double interval, Repeats repeats, Action action)
    : _firstDelay(positiveOr(firstDelay, 0))
    , _interval(positiveOr(interval, shortestInterval))
    , _repeats(repeats)
    , _action(std::move(action))
{
}

void Timer::invalidate()
{
    if (!_valid)
        return;

    // The loop's reference may be the last one.
    Ref<Timer> protector(this);
    _valid = false;
    if (auto* runLoop = std::exchange(_runLoop, nullptr))
        runLoop->removeTimer(*this);
    // Destroyed last, when everything is whole: what the closure owns may call back.
    const auto action = std::exchange(_action, nullptr);
}

} // namespace zef

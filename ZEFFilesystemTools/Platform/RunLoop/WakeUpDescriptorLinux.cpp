// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/WakeUpDescriptor.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace zef {
namespace {

using std::chrono::nanoseconds;

timespec toTimespec(nanoseconds time)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec result{};
    result.tv_sec = static_cast<time_t>(seconds.count());
    result.tv_nsec = static_cast<long>((time - seconds).count());
    return result;
}

bool watch(int epoll, int descriptor)
{
    epoll_event event{};
    event.events = EPOLLIN;
    return !epoll_ctl(epoll, EPOLL_CTL_ADD, descriptor, &event);
}

void closeIfOpen(int& descriptor)
{
    if (descriptor >= 0)
        ::close(std::exchange(descriptor, -1));
}

} // namespace

WakeUpDescriptor::~WakeUpDescriptor()
{
    close();
}

bool WakeUpDescriptor::open()
{
    if (isOpen())
        return true;
    _epoll = epoll_create1(EPOLL_CLOEXEC);
    if (_epoll < 0)
        return false;

    _timer = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    _event = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (watch(_epoll, _timer) && watch(_epoll, _event))
        return true;
    close();
    return false;
}

// Setting the time also takes back an expiry: nothing ever reads the timer's descriptor. A moment
// in the past would work, but costs up to 50 microseconds on virtual machines, 25 times a signal.
void WakeUpDescriptor::arm(std::optional<nanoseconds> moment)
{
    if (!isOpen() || _moment == moment)
        return;
    _moment = moment;
    itimerspec setting{};
    // A time of 0 would disarm it.
    if (_moment)
        setting.it_value = toTimespec(std::max(*_moment, nanoseconds(1)));
    timerfd_settime(_timer, TFD_TIMER_ABSTIME, &setting, nullptr);
}

void WakeUpDescriptor::signal(Reason reason)
{
    if (!isOpen())
        return;
    _reasons |= static_cast<unsigned>(reason);
    eventfd_write(_event, 1);
}

void WakeUpDescriptor::clear(Reason reason)
{
    const auto remaining = _reasons & ~static_cast<unsigned>(reason);
    eventfd_t count;
    if (_reasons && !remaining)
        eventfd_read(_event, &count);
    _reasons = remaining;
}

void WakeUpDescriptor::wait(nanoseconds limit) const
{
    if (!isOpen())
        return;
    pollfd watched{ _epoll, POLLIN, 0 };
    const auto timeout = toTimespec(std::max(limit, nanoseconds(0)));
    ppoll(&watched, 1, &timeout, nullptr);
}

void WakeUpDescriptor::close()
{
    closeIfOpen(_epoll);
    closeIfOpen(_timer);
    closeIfOpen(_event);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace zef {
namespace {

double secondsOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

class LinuxClock final : public Clock {
public:
    Date now() override { return Date::withSecondsSince1970(secondsOf(CLOCK_REALTIME)); }
    double monotonicSeconds() override { return secondsOf(CLOCK_MONOTONIC); }

    void sleep(double seconds) override
    {
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    }
};

} // namespace

Clock& Clock::system()
{
    return immortal<LinuxClock>();
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "tools/zef/Interruption.h"

#include "tools/zef/ExitStatus.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

#include <sys/eventfd.h>
#include <unistd.h>

namespace tool {
namespace {

std::atomic<int> notedSignal{ 0 };
int wakeUpDescriptor = -1;

static_assert(std::atomic<int>::is_always_lock_free, "a signal handler must not wait for a lock");

void note(int signal)
{
    const int savedError = errno;
    if (notedSignal.exchange(signal))
        _exit(ExitStatus::endedBySignal(signal));
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUpDescriptor, &one, sizeof one);
    errno = savedError;
}

void noteUnlessIgnored(int signal)
{
    struct sigaction action { };
    if (sigaction(signal, nullptr, &action) < 0 || action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = note;
    // No SA_RESTART: a write to a terminal that stands still has to be given up.
    sigaction(signal, &action, nullptr);
}

} // namespace

void Interruption::install()
{
    wakeUpDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUpDescriptor < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    // A reader that has gone away shows in what a write returns.
    std::signal(SIGPIPE, SIG_IGN);
    noteUnlessIgnored(SIGINT);
    noteUnlessIgnored(SIGTERM);
}

int Interruption::descriptor()
{
    return wakeUpDescriptor;
}

int Interruption::signal()
{
    return notedSignal;
}

} // namespace tool

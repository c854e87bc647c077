// SPDX-License-Identifier: MIT
#include "tools/zef/MainLoop.h"

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/Output.h"

#include <algorithm>
#include <cmath>

#include <poll.h>
#include <unistd.h>

namespace tool {
namespace {

// A run loop that got no descriptor from the system has to be turned by the clock.
int timeoutWithoutDescriptor()
{
    constexpr double longestWait = 3600;
    const double seconds = zef::RunLoop::current().secondsUntilNextTimer();
    return static_cast<int>(std::ceil(std::min(seconds, longestWait) * 1000));
}

} // namespace

WakeUp waitForWork(int input)
{
    const int runLoop = zef::RunLoop::current().descriptor();
    pollfd watched[] = {
        { input, POLLIN, 0 }, { runLoop, POLLIN, 0 }, { Interruption::descriptor(), POLLIN, 0 },
        { STDOUT_FILENO, 0, 0 }, // errors are always reported
    };
    const int count = poll(
        watched, std::size(watched), runLoop < 0 ? timeoutWithoutDescriptor() : -1);
    if (watched[3].revents)
        Output::standardOutput().setClosed();
    return { watched[0].revents != 0, watched[1].revents != 0 || (runLoop < 0 && count >= 0) };
}

bool mustEnd()
{
    return Interruption::signal() || Output::standardOutput().error();
}

int statusOfEnd()
{
    const int signal = Interruption::signal();
    return signal ? ExitStatus::endedBySignal(signal) : statusOfOutput();
}

} // namespace tool

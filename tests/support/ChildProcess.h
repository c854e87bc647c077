// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>

#include <sys/wait.h>
#include <unistd.h>

/// Runs `work` in a child process, for what would spoil the test's own, and returns the number that
/// it returns (0 to 254); -1 when the child couldn't be made or did not get to its end, also by an
/// exception. The child must not use GoogleTest's assertions.
template <typename Work> int resultInChildProcess(Work&& work)
{
    constexpr int failed = 255;
    const auto child = ::fork();
    if (child == 0) {
        try {
            ::_exit(work());
        } catch (...) {
            ::_exit(failed);
        }
    }
    int status = 0;
    while (child > 0 && ::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    const bool hasResult = child > 0 && WIFEXITED(status) && WEXITSTATUS(status) != failed;
    return hasResult ? WEXITSTATUS(status) : -1;
}

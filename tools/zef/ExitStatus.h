// SPDX-License-Identifier: MIT
#pragma once

namespace tool {

/// What the program ends with.
struct ExitStatus {
    static constexpr int done = 0;
    /// Something asked for could not be done; standard error says what.
    static constexpr int failed = 1;
    static constexpr int wrongUsage = 2;

    /// As shells count programs that a signal ended.
    static constexpr int endedBySignal(int signal) { return 128 + signal; }
};

} // namespace tool

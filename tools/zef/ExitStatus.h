// SPDX-License-Identifier: MIT
#pragma once

/// What the program ends with.
namespace tool::exitStatus {

constexpr int done = 0;
/// Something asked for could not be done; standard error says what.
constexpr int failed = 1;
constexpr int wrongUsage = 2;

/// As shells count programs that a signal ended.
constexpr int endedBySignal(int signal)
{
    return 128 + signal;
}

} // namespace tool::exitStatus

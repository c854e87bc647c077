// SPDX-License-Identifier: MIT
#pragma once

namespace tool {

/// What ended a wait.
struct WakeUp {
    /// The input can be read, or has ended.
    bool hasInput = false;
    /// The run loop has something to perform.
    bool runLoopIsDue = false;
};

/// Waits until `input` (-1: none) can be read, the run loop of this thread has something to
/// perform, a signal asks the program to end, or nobody reads standard output any more.
WakeUp waitForWork(int input);

/// Whether the program has to end: a signal came, or nobody reads standard output any more.
bool mustEnd();

/// The status to end with when `mustEnd`; reports a failure of standard output.
int statusOfEnd();

} // namespace tool

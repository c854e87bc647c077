// SPDX-License-Identifier: MIT
#pragma once

namespace tool {

/// Takes note of the signals that ask the program to end (SIGINT, SIGTERM), so that it can do so
/// between two steps of its work.
class Interruption {
public:
    /// From now on those signals are noted, but not one that the program was started to ignore. A
    /// second signal ends the program at once. To be called first, on the main thread.
    static void install();

    /// Readable once a signal has come. Stays the program's.
    static int descriptor();

    /// The first signal that came; 0 while none has.
    static int signal();
};

} // namespace tool

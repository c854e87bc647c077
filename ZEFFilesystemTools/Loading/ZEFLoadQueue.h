// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

/// The one queue that every background load of the process runs on, at most 64 at once.
///
/// The file manager hands it out, and ends it when it is shut down. Any thread.
class ZEFLoadQueue {
public:
    /// Made at the first call; null between `end` and `begin`.
    static zef::Ref<zef::OperationQueue> queue();
    /// For tests: makes a new queue after the last one was ended.
    static void begin();
    /// Waits for the loads that run; those that have not begun never will if the queue is
    /// suspended.
    static void end();
};

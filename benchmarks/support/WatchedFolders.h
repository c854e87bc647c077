// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionProtocol.h"

#include "tests/support/SteppedClock.h"

#include <string>
#include <vector>

/// Watches folders through the file manager, which polls when it is told to and not on its own.
///
/// The run loop goes by a clock that is stepped, so that nothing waits: not for the references that
/// a subscription takes little by little, nor, at the end, for the manager to drop it.
class WatchedFolders {
public:
    /// Watches until the end of its life, settled: polled twice, and with nothing left to be done.
    explicit WatchedFolders(const std::vector<std::string>& paths);
    ~WatchedFolders();
    WatchedFolders(const WatchedFolders&) = delete;
    WatchedFolders& operator=(const WatchedFolders&) = delete;

    /// One poll of all folders.
    void poll();

    /// Polls and returns how many change records the subscriber got.
    std::size_t recordsOfPoll();

private:
    class Subscriber;

    void runTimers();

    SteppedClock _clock;
    zef::RunLoop _runLoop{ _clock };
    zef::Ref<Subscriber> _subscriber;
};

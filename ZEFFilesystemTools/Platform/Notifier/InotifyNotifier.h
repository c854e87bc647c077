// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"
#include "ZEFFilesystemTools/Platform/Notifier/InotifyQueue.h"
#include "ZEFFilesystemTools/Platform/Notifier/ThreadRounds.h"
#include "ZEFFilesystemTools/Platform/Notifier/WatchTokens.h"
#include "ZEFFilesystemTools/Platform/Volumes/DeviceKindCache.h"

#include <cstddef>
#include <limits>
#include <mutex>

namespace zef {

/// The notifier on top of inotify(7).
///
/// Opening a token costs one system call, which may put the watch on another object that has taken
/// the path meanwhile; so the first poll verifies where the watch is, at two calls. Later polls of
/// the token cost none within a round. Any thread; the lock is never held while a remote file
/// system answers, nor while another service is asked.
class InotifyNotifier final : public ChangeNotifier {
public:
    int createQueue() override;
    int open(const FSRef&, const FileURL&) override;
    int poll(int number, const FSRef&, const FileURL&) override;
    void close(int number) override;
    void beginRound() override;
    void endRound() override;
    void setWatchLimit(std::size_t) override;

    /// How many watches are in use.
    std::size_t watchCount();

    /// Whether the token with this number compares time stamps; false for one that is not open.
    bool comparesStamps(int number);

private:
    enum class Placement { confirmed, moved, unreachable, gone };

    int openUnverified(const FSRef&, const char* path);
    int openPlaced(const FSRef&, const FileURL&);
    int pollByStamps(int number, const FileURL&, StampClock);
    int pollUnverified(int number, const FSRef&, const FileURL&);

    Placement placeWhereverItIs(int number, const FSRef&, const FileURL&);
    Placement place(int number, const FSRef&, const FileURL&);

    // With the lock held:
    int addWatchFor(const WatchToken&, const char* path, bool isFolder);
    void compareStamps(WatchToken&, const FileStamps&, StampClock);
    void giveUp(int watch);
    void drain();

    std::mutex _mutex;
    InotifyQueue _queue;
    WatchTokens _tokens;
    ThreadRounds _rounds;
    DeviceKindCache _devices;
    std::size_t _watchLimit = std::numeric_limits<std::size_t>::max();
};

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/InotifyNotifier.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <cerrno>
#include <memory>
#include <utility>

// A token is opened in the cheapest way that can be made right later: with a watch on the path,
// without a look at what lies there. Its first poll verifies the watch: `place` looks whether the
// path leads to the object and adds the watch once more. The same number means that the watch is on
// the object. Otherwise the token moves to the new watch, looks again, because the path may have
// gone to another object in between, and reports something, because its events until then were
// another object's. What can't be watched compares time stamps from then on. Lost events make every
// watch unverified again, since the ends of watches may be among them.

namespace zef {
namespace {

using Means = WatchToken::Means;

// An empty reference stands for whatever is at the path.
bool leadsTo(const PathBytes& path, const FSRef& ref, Stat& stat)
{
    return FileSystem::shared().statLink(path.text(), stat) == 0
        && (ref.isEmpty() || sameObject(stat, ref, path.text()));
}

// The time is taken first: what happens while the file system answers must not count as settled.
FileStamps lookAt(const FileURL& url, StampClock clock)
{
    const auto lookedAt = Clock::shared().now();
    PathBytes path;
    Stat stat;
    if (!url.fileSystemRepresentation(path)
        || FileSystem::shared().statLink(path.text(), stat) != 0)
        return {};
    return { stat, lookedAt, clock };
}

StampClock clockOf(DeviceKind kind)
{
    const bool isOurs = kind == DeviceKind::local || kind == DeviceKind::madeUp;
    return isOurs ? StampClock::ours : StampClock::otherHosts;
}

int answer(WatchToken& token)
{
    return std::exchange(token.isMarked, false) ? 1 : 0;
}

int notOpen()
{
    errno = EBADF;
    return -1;
}

} // namespace

ChangeNotifier& ChangeNotifier::system()
{
    return immortal<InotifyNotifier>();
}

int InotifyNotifier::createQueue()
{
    std::lock_guard lock(_mutex);
    // Without an instance of inotify the tokens compare time stamps, so there is always a queue.
    _queue.open();
    return 0;
}

int InotifyNotifier::open(const FSRef& ref, const FileURL& url)
{
    PathBytes path;
    if (!ref.isEmpty() && url.fileSystemRepresentation(path)) {
        if (const int token = openUnverified(ref, path.text()))
            return token;
    }
    return openPlaced(ref, url);
}

int InotifyNotifier::poll(int number, const FSRef& ref, const FileURL& url)
{
    auto means = Means::none;
    auto clock = StampClock::ours;
    {
        std::lock_guard lock(_mutex);
        auto* token = _tokens.find(number);
        if (!token)
            return notOpen();
        if (token->means != Means::stamps && !_rounds.isOpen())
            drain();
        if (token->means == Means::watch)
            return answer(*token);
        means = token->means;
        clock = token->stampClock;
    }
    return means == Means::stamps ? pollByStamps(number, url, clock)
                                  : pollUnverified(number, ref, url);
}

void InotifyNotifier::close(int number)
{
    std::lock_guard lock(_mutex);
    giveUp(_tokens.remove(number));
}

void InotifyNotifier::beginRound()
{
    std::lock_guard lock(_mutex);
    if (_rounds.begin())
        drain();
}

void InotifyNotifier::endRound()
{
    std::lock_guard lock(_mutex);
    _rounds.end();
}

void InotifyNotifier::setWatchLimit(std::size_t limit)
{
    std::lock_guard lock(_mutex);
    _watchLimit = limit;
}

std::size_t InotifyNotifier::watchCount()
{
    std::lock_guard lock(_mutex);
    return _tokens.watchCount();
}

bool InotifyNotifier::comparesStamps(int number)
{
    std::lock_guard lock(_mutex);
    const auto* token = _tokens.find(number);
    return token && token->means == Means::stamps;
}

// Any failure is left to `openPlaced`, which finds out what is wrong.
int InotifyNotifier::openUnverified(const FSRef& ref, const char* path)
{
    if (_devices.kind(ref.device(), path) != DeviceKind::local)
        return 0;
    std::lock_guard lock(_mutex);
    const int number = _tokens.add();
    auto* token = _tokens.find(number);
    if (!token)
        return 0;
    const int watch = addWatchFor(*token, path, ref.isFolder());
    if (watch < 0) {
        _tokens.remove(number);
        return 0;
    }
    _tokens.setWatch(*token, watch);
    return number;
}

int InotifyNotifier::openPlaced(const FSRef& ref, const FileURL& url)
{
    std::unique_lock lock(_mutex);
    const int number = _tokens.add();
    lock.unlock();
    if (!number || placeWhereverItIs(number, ref, url) != Placement::gone)
        return number;
    close(number);
    return 0;
}

int InotifyNotifier::pollByStamps(int number, const FileURL& url, StampClock clock)
{
    const auto look = lookAt(url, clock);
    std::lock_guard lock(_mutex);
    auto* token = _tokens.find(number);
    if (!token)
        return notOpen();
    if (!token->stamps)
        token->stamps = std::make_unique<FileStamps>();
    if (look.mayHaveChangedSince(*token->stamps))
        token->isMarked = true;
    *token->stamps = look;
    return answer(*token);
}

int InotifyNotifier::pollUnverified(int number, const FSRef& ref, const FileURL& url)
{
    const auto placement = placeWhereverItIs(number, ref, url);
    std::lock_guard lock(_mutex);
    auto* token = _tokens.find(number);
    if (!token)
        return notOpen();
    if (placement == Placement::unreachable || placement == Placement::gone)
        compareStamps(*token, {}, StampClock::ours);
    // Until now the watch may have been on another object.
    if (placement != Placement::confirmed)
        token->isMarked = true;
    return answer(*token);
}

InotifyNotifier::Placement InotifyNotifier::placeWhereverItIs(
    int number, const FSRef& ref, const FileURL& url)
{
    const auto placement = place(number, ref, url);
    if (placement != Placement::unreachable)
        return placement;
    const auto found = ref.isEmpty() ? nullptr : Locator::shared().locate(ref, url);
    return found ? place(number, ref, found) : Placement::gone;
}

// Puts the token on the object, which `url` should lead to; looks before and after, because the
// path may be given to another object at any time.
InotifyNotifier::Placement InotifyNotifier::place(int number, const FSRef& ref, const FileURL& url)
{
    const auto lookedAt = Clock::shared().now();
    PathBytes path;
    Stat stat;
    if (!url.fileSystemRepresentation(path) || !leadsTo(path, ref, stat))
        return Placement::unreachable;
    const auto kind = _devices.kind(stat.device, path.text());
    const auto clock = clockOf(kind);

    std::unique_lock lock(_mutex);
    auto* token = _tokens.find(number);
    if (!token)
        return Placement::unreachable;
    const int watch = kind == DeviceKind::local ? addWatchFor(*token, path.text(), stat.isFolder())
                                                : -1;
    if (watch >= 0 && watch == token->watch) {
        token->means = Means::watch;
        return Placement::confirmed;
    }
    if (watch >= 0)
        giveUp(_tokens.setWatch(*token, watch));
    if (watch < 0 || _tokens.watchCount() > _watchLimit) {
        compareStamps(*token, FileStamps(stat, lookedAt, clock), clock);
        return Placement::moved;
    }
    lock.unlock();

    if (!leadsTo(path, ref, stat))
        return Placement::unreachable;
    lock.lock();
    token = _tokens.find(number);
    if (token && token->watch == watch)
        token->means = Means::watch;
    return Placement::moved;
}

int InotifyNotifier::addWatchFor(const WatchToken& token, const char* path, bool isFolder)
{
    if (token.watch < 0 && _tokens.watchCount() >= _watchLimit)
        return -1;
    const int watch = _queue.add(path, isFolder);
    if (watch < 0 || watch == token.watch || !_tokens.isWatched(watch))
        return watch;
    // What is queued for the watch's other tokens is older than this one, and may be its end.
    drain();
    return _tokens.isWatched(watch) ? watch : -1;
}

void InotifyNotifier::compareStamps(WatchToken& token, const FileStamps& stamps, StampClock clock)
{
    giveUp(_tokens.setStamps(token, stamps, clock));
}

void InotifyNotifier::giveUp(int watch)
{
    if (watch >= 0)
        _queue.remove(watch);
}

void InotifyNotifier::drain()
{
    while (const auto event = _queue.next()) {
        switch (event->meaning) {
        case InotifyQueue::Meaning::deviceUnmounted:
            _devices.forget();
            [[fallthrough]];
        case InotifyQueue::Meaning::somethingHappened:
            _tokens.mark(event->watch);
            break;
        case InotifyQueue::Meaning::watchEnded:
            _tokens.endWatch(event->watch);
            break;
        case InotifyQueue::Meaning::eventsLost:
            _tokens.doubtEveryWatch();
            break;
        }
    }
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/InotifyQueue.h"

#include <climits>
#include <cstdint>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace zef {
namespace {

// A watch belongs to the object, whatever path it was made by, and its mask would be replaced by
// the next one: IN_MASK_ADD keeps a path that leads elsewhere from blinding another's watch.
constexpr std::uint32_t everyMask = IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF | IN_DONT_FOLLOW
    | IN_MASK_ADD;
constexpr std::uint32_t fileMask = everyMask | IN_MODIFY;
constexpr std::uint32_t folderMask = everyMask | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO
    | IN_ONLYDIR | IN_EXCL_UNLINK;

constexpr std::size_t largestEvent = sizeof(struct inotify_event) + NAME_MAX + 1;

// A folder's watch also reports what its entries' watches would, then with the entry's name.
bool isAboutAnEntry(const struct inotify_event& event)
{
    return event.len && (event.mask & (IN_ATTRIB | IN_MODIFY));
}

InotifyQueue::Meaning meaningOf(std::uint32_t mask)
{
    if (mask & IN_Q_OVERFLOW)
        return InotifyQueue::Meaning::eventsLost;
    if (mask & IN_IGNORED)
        return InotifyQueue::Meaning::watchEnded;
    return mask & IN_UNMOUNT ? InotifyQueue::Meaning::deviceUnmounted
                             : InotifyQueue::Meaning::somethingHappened;
}

} // namespace

InotifyQueue::~InotifyQueue()
{
    if (_descriptor >= 0)
        ::close(_descriptor);
}

bool InotifyQueue::open()
{
    if (_descriptor < 0)
        _descriptor = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    return _descriptor >= 0;
}

int InotifyQueue::add(const char* path, bool isFolder)
{
    return open() ? ::inotify_add_watch(_descriptor, path, isFolder ? folderMask : fileMask) : -1;
}

void InotifyQueue::remove(int watch)
{
    ::inotify_rm_watch(_descriptor, watch);
}

std::optional<InotifyQueue::Event> InotifyQueue::next()
{
    while (_position < _filled || fill()) {
        const auto& event = *reinterpret_cast<const struct inotify_event*>(_buffer + _position);
        _position += sizeof event + event.len;
        if (!isAboutAnEntry(event))
            return Event{ meaningOf(event.mask), event.wd };
    }
    return std::nullopt;
}

bool InotifyQueue::fill()
{
    // After a read that left room for one more event the queue was empty: asking again would be
    // one more system call.
    if (std::exchange(_isExhausted, false) || _descriptor < 0)
        return false;
    const auto count = ::read(_descriptor, _buffer, sizeof _buffer);
    if (count <= 0)
        return false;
    _position = 0;
    _filled = static_cast<std::size_t>(count);
    _isExhausted = sizeof _buffer - _filled >= largestEvent;
    return true;
}

} // namespace zef

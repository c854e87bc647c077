// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

namespace zef {

/// The system's queue of events on watched objects (inotify(7)), never waited for. One thread at a
/// time.
class InotifyQueue {
public:
    enum class Meaning {
        somethingHappened,
        /// The watch is gone, with its object or its device.
        watchEnded,
        /// The device is gone; `watchEnded` follows.
        deviceUnmounted,
        /// Events of any watches were thrown away.
        eventsLost,
    };

    struct Event {
        Meaning meaning;
        /// -1 with `eventsLost`.
        int watch;
    };

    InotifyQueue() = default;
    ~InotifyQueue();
    InotifyQueue(const InotifyQueue&) = delete;
    InotifyQueue& operator=(const InotifyQueue&) = delete;

    /// Makes the queue unless it is there; false if the system has none to give.
    bool open();

    /// Watches the object at `path`, links not followed. Returns the number of its watch, which is
    /// the old one if the object is watched already; -1 if it can't be watched.
    [[nodiscard]] int add(const char* path, bool isFolder);

    /// Ends a watch; nothing for one that has ended. Events of it that are queued still come.
    void remove(int watch);

    /// The next event; none if there are no more for now. Skips events that concern only a folder's
    /// entries, not the folder itself.
    std::optional<Event> next();

private:
    bool fill();

    int _descriptor = -1;
    bool _isExhausted = false;
    std::size_t _position = 0;
    std::size_t _filled = 0;
    alignas(8) std::byte _buffer[65536];
};

} // namespace zef

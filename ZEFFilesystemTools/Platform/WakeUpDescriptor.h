// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

namespace zef {

/// One descriptor that becomes readable when a moment has come or when somebody signals: what a run
/// loop sleeps on. Made of an epoll, a timer and an event descriptor (epoll(7), timerfd_create(2),
/// eventfd(2)), all three or none. Belongs to the run loop, which guards it.
class WakeUpDescriptor {
public:
    WakeUpDescriptor() = default;
    ~WakeUpDescriptor();
    WakeUpDescriptor(const WakeUpDescriptor&) = delete;
    WakeUpDescriptor& operator=(const WakeUpDescriptor&) = delete;

    /// Makes the descriptors unless they are there. NO when the system gives none (EMFILE, ENFILE);
    /// until a later call succeeds every other function does nothing.
    bool open();
    bool isOpen() const { return _epoll >= 0; }

    /// Borrowed; -1 while not open.
    int descriptor() const { return _epoll; }

    /// From `moment` on (CLOCK_MONOTONIC) the descriptor is readable; until then it is not, unless
    /// it was signalled. Nothing: never.
    void arm(std::optional<std::chrono::nanoseconds> moment);

    /// As `arm` with the same moment as before, and wakes an edge-triggered watcher once more.
    void rearm();

    /// Makes the descriptor readable at once. Any thread, if the owner keeps it from being opened
    /// meanwhile; so may `clear`.
    void signal();
    /// Takes every signal back.
    void clear();

    /// Waits until the descriptor is readable, at most for `limit`; may return early.
    void wait(std::chrono::nanoseconds limit) const;

private:
    void close();

    int _epoll = -1;
    int _timer = -1;
    int _event = -1;
    std::optional<std::chrono::nanoseconds> _moment;
};

} // namespace zef

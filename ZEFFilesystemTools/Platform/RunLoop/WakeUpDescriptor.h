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

    /// Makes the descriptors unless they are there. False if the system gives none (EMFILE,
    /// ENFILE); until a later call succeeds every other function does nothing.
    bool open();
    bool isOpen() const { return _epoll >= 0; }

    /// Borrowed; -1 while not open.
    int descriptor() const { return _epoll; }

    /// Makes the descriptor readable when `moment` has come (CLOCK_MONOTONIC), and unreadable until
    /// then as far as earlier moments are concerned. Nothing: never.
    void arm(std::optional<std::chrono::nanoseconds> moment);

    /// Why the descriptor is readable before any moment has come.
    enum class Reason : unsigned char { actionPosted = 1, timerDue = 2 };

    /// Makes the descriptor readable at once, and wakes an edge-triggered watcher also when it was
    /// readable already. On several threads if the owner lets only one at a time into `open`,
    /// `signal` and `clear`.
    void signal(Reason);
    /// Takes a signal back; the descriptor stays readable for other reasons.
    void clear(Reason);

    /// Waits until the descriptor is readable, at most for `limit`; may return early.
    void wait(std::chrono::nanoseconds limit) const;

private:
    void close();

    int _epoll = -1;
    int _timer = -1;
    int _event = -1;
    std::optional<std::chrono::nanoseconds> _moment;
    unsigned _reasons = 0;
};

} // namespace zef

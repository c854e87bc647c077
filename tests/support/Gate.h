// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <stdexcept>

/// Holds up the threads that pass by until the test lets them through.
class Gate {
public:
    /// Waits here until let through.
    void pass()
    {
        std::unique_lock lock(_mutex);
        ++_arrivals;
        _changed.notify_all();
        _changed.wait(lock, [this] { return _isOpen || _tickets; });
        if (!_isOpen)
            --_tickets;
    }

    /// Waits until one more thread has come; throws when none comes.
    void awaitArrival()
    {
        std::unique_lock lock(_mutex);
        const auto hasCome = _changed.wait_for(
            lock, std::chrono::minutes(1), [this] { return _arrivals > _awaited; });
        if (!hasCome)
            throw std::runtime_error("nobody comes to the gate");
        ++_awaited;
    }

    /// Lets one thread through: one that waits, or else the next to come.
    void letOneThrough()
    {
        std::lock_guard lock(_mutex);
        ++_tickets;
        _changed.notify_all();
    }

    /// Lets everybody through from now on.
    void open()
    {
        std::lock_guard lock(_mutex);
        _isOpen = true;
        _changed.notify_all();
    }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    std::size_t _arrivals = 0;
    std::size_t _awaited = 0;
    std::size_t _tickets = 0;
    bool _isOpen = false;
};

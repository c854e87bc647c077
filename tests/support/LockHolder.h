// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/Lock.h"

#include <latch>
#include <mutex>
#include <thread>

/// Keeps a lock held by another thread while this lives.
class LockHolder {
public:
    explicit LockHolder(zef::Lock& lock)
        : _thread([this, &lock] {
            std::lock_guard guard(lock);
            _taken.count_down();
            _end.wait();
        })
    {
        _taken.wait();
    }

    ~LockHolder()
    {
        _end.count_down();
        _thread.join();
    }

    LockHolder(const LockHolder&) = delete;
    LockHolder& operator=(const LockHolder&) = delete;

private:
    std::latch _taken{ 1 };
    std::latch _end{ 1 };
    std::thread _thread;
};

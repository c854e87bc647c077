// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <atomic>

namespace zef {

/// A lock of one byte for objects of which there are very many; for a few objects take std::mutex.
/// For short holds without a system call. Not recursive; any thread; works with std::lock_guard.
class ZEF_EXPORT ByteLock {
public:
    void lock()
    {
        while (_taken.test_and_set(std::memory_order_acquire))
            _taken.wait(true, std::memory_order_relaxed);
    }

    void unlock()
    {
        _taken.clear(std::memory_order_release);
        _taken.notify_one();
    }

private:
    std::atomic_flag _taken = ATOMIC_FLAG_INIT;
};

} // namespace zef

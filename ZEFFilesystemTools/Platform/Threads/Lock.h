// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <mutex>

namespace zef {

/// A lock that several parties hold a reference to; where one owner has it, take std::mutex. Not
/// recursive; any thread.
class ZEF_EXPORT Lock final : public ZEFObject {
public:
    /// Waits for the lock and takes it.
    void lock() { _mutex.lock(); }
    /// Gives the lock up.
    void unlock() { _mutex.unlock(); }

    /// Takes the lock if nobody has it; never waits. False if it is taken.
    bool tryLock() { return _mutex.try_lock(); }

private:
    std::mutex _mutex;
};

} // namespace zef

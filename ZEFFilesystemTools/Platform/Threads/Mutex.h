// SPDX-License-Identifier: MIT
#pragma once

namespace zef {

/// A mutex that returns errors instead of throwing them (pthread_mutex_lock(3p)); take it only
/// where a failure must be handled or logged, otherwise std::mutex.
class Mutex {
public:
    virtual ~Mutex() = default;

    /// Waits for the lock and takes it; 0 or an errno value.
    virtual int lock() = 0;
    /// Gives the lock up; 0 or an errno value.
    virtual int unlock() = 0;

    /// A new mutex of the system; never freed, for one that lives as long as the process.
    static Mutex& makeImmortal();
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

namespace zef {

/// A lock whose failures are told rather than thrown (pthread_mutex_lock(3p)).
class Mutex {
public:
    virtual ~Mutex() = default;

    /// Waits for the lock and takes it; 0 or an errno value.
    virtual int lock() = 0;
    /// Gives the lock up; 0 or an errno value.
    virtual int unlock() = 0;

    /// A new lock of the system's; never freed, for locks that live as long as the process.
    static Mutex& makeImmortal();
};

} // namespace zef

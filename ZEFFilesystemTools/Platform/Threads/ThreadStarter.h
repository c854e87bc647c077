// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"

#include <functional>

namespace zef {

/// Starts threads that nobody waits for. Any thread.
class ThreadStarter : public SharedService<ThreadStarter> {
public:
    virtual ~ThreadStarter() = default;

    static ThreadStarter& system();

    /// Runs `body`, which must not let out an exception, on a new thread with a stack of 8 MiB. The
    /// thread shows as `name` (15 bytes at the most) in ps(1) and debuggers, and takes none of the
    /// process's signals but those that its own faults raise. False if the system gives no thread;
    /// `body` is then dropped.
    virtual bool start(const char* name, std::function<void()> body) = 0;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <utility>

namespace zef {

/// Lets work go on after a host's callback has thrown, and throws what came first when the work is
/// done, so that an exception passes through unchanged and loses nothing on its way. One thread.
class FirstException {
public:
    /// Calls `work` and keeps what it throws.
    template <typename Work> void guard(Work&& work)
    {
        try {
            std::forward<Work>(work)();
        } catch (...) {
            if (!_exception)
                _exception = std::current_exception();
        }
    }

    /// Throws the first exception that was kept, if any.
    void rethrow()
    {
        if (_exception)
            std::rethrow_exception(std::exchange(_exception, nullptr));
    }

private:
    std::exception_ptr _exception;
};

} // namespace zef

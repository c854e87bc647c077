// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cassert>
#include <thread>
#include <type_traits>

namespace zef {

/// Whether assert(3) checks anything in this build.
constexpr bool assertionsAreOn()
{
    bool areOn = false;
    assert((areOn = true)); // NOLINT(bugprone-assert-side-effect): the effect is the answer
    return areOn;
}

/// Remembers the thread of the first question, as which an object that belongs to one thread
/// asserts that no other uses it: `assert(_threadChecker.isOnItsThread())`.
///
/// An inactive one is empty and always content; as a `[[no_unique_address]]` member it costs
/// nothing. Not for installed classes, whose size must not depend on the build. Any thread.
template <bool isActive> class BasicThreadChecker {
public:
    /// False on every thread but the one that asked first.
    bool isOnItsThread() const
    {
        if constexpr (isActive) {
            std::thread::id owner;
            const auto current = std::this_thread::get_id();
            return _owner.compare_exchange_strong(owner, current) || owner == current;
        }
        return true;
    }

private:
    struct Nothing { };

    [[no_unique_address]] mutable std::conditional_t<isActive, std::atomic<std::thread::id>,
        Nothing>
        _owner;
};

/// Active where assertions are on.
using ThreadChecker = BasicThreadChecker<assertionsAreOn()>;

} // namespace zef

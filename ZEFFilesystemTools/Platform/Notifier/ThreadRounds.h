// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <thread>
#include <vector>

namespace zef {

/// The rounds that are open, on which threads and how deep: a thread that opens one while another
/// thread's is open must not be kept from reading the queue. Guarded by its owner.
class ThreadRounds {
public:
    /// Opens a round on the calling thread; true for its outermost one.
    bool begin()
    {
        if (auto found = ofThisThread(); found != _rounds.end()) {
            ++found->depth;
            return false;
        }
        _rounds.push_back({ std::this_thread::get_id(), 1 });
        return true;
    }

    /// Closes the calling thread's innermost round; nothing without one.
    void end()
    {
        const auto found = ofThisThread();
        if (found != _rounds.end() && --found->depth == 0)
            _rounds.erase(found);
    }

    /// Whether the calling thread has a round open.
    bool isOpen() { return ofThisThread() != _rounds.end(); }

private:
    struct Round {
        std::thread::id thread;
        unsigned depth;
    };

    std::vector<Round>::iterator ofThisThread()
    {
        return std::find_if(_rounds.begin(), _rounds.end(),
            [self = std::this_thread::get_id()](
                const Round& round) { return round.thread == self; });
    }

    std::vector<Round> _rounds;
};

} // namespace zef

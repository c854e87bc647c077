// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Counts what the calling thread takes from the heap with `new` since the counter was made.
class AllocationCounter {
public:
    AllocationCounter();

    /// False under the sanitizers, which have a heap of their own.
    static bool isAvailable();

    std::size_t count() const;

private:
    std::size_t _countBefore;
};

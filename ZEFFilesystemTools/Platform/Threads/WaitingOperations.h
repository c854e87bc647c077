// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/Operation.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zef {

/// The operations of one queue that have not begun, in the order in which they are to begin: by
/// priority, then as they were added. Part of the queue, which guards it; never calls out.
class WaitingOperations {
public:
    bool isEmpty() const { return _heap.empty(); }
    std::size_t count() const { return _heap.size(); }

    void add(Ref<Operation>);

    /// The operation that is to begin next by the priorities that the operations have now. There
    /// must be one.
    Ref<Operation> takeNext();

    /// Empties the collection and hands the operations to the caller, in no particular order.
    std::vector<Ref<Operation>> takeAll();

    void cancelAll();

private:
    struct Entry {
        QueuePriority priority;
        std::uint64_t number;
        Ref<Operation> operation;

        bool beginsAfter(const Entry& other) const;
    };

    void noteChangedPriorities();

    std::vector<Entry> _heap;
    std::uint64_t _addedCount = 0;
    std::uint64_t _seenPriorityChanges = 0;
};

} // namespace zef

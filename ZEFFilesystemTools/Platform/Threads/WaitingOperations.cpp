// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/WaitingOperations.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace zef {

bool WaitingOperations::Entry::beginsAfter(const Entry& other) const
{
    return priority != other.priority ? priority < other.priority : number > other.number;
}

void WaitingOperations::add(Ref<Operation> operation)
{
    const auto priority = operation->queuePriority();
    _heap.push_back({ priority, _addedCount++, std::move(operation) });
    std::push_heap(_heap.begin(), _heap.end(), std::mem_fn(&Entry::beginsAfter));
}

Ref<Operation> WaitingOperations::takeNext()
{
    noteChangedPriorities();
    std::pop_heap(_heap.begin(), _heap.end(), std::mem_fn(&Entry::beginsAfter));
    auto operation = std::move(_heap.back().operation);
    _heap.pop_back();
    return operation;
}

std::vector<Ref<Operation>> WaitingOperations::takeAll()
{
    std::vector<Ref<Operation>> operations;
    for (auto& entry : std::exchange(_heap, {}))
        operations.push_back(std::move(entry.operation));
    return operations;
}

void WaitingOperations::cancelAll()
{
    for (const auto& entry : _heap)
        entry.operation->cancel();
}

// Priorities hardly ever change while an operation waits: one number stands for all operations.
void WaitingOperations::noteChangedPriorities()
{
    const auto changes = Operation::waitingPriorityChanges();
    if (std::exchange(_seenPriorityChanges, changes) == changes)
        return;
    for (auto& entry : _heap)
        entry.priority = entry.operation->queuePriority();
    std::make_heap(_heap.begin(), _heap.end(), std::mem_fn(&Entry::beginsAfter));
}

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Operation.h"

#include <cstddef>
#include <memory>

namespace zef {

/// Runs operations on threads of its own, started when they are needed and ended after a while
/// without work.
///
/// Among waiting operations the highest priority goes first, then the one added first. Any thread.
class OperationQueue final : public ZEFObject {
public:
    static const Class classObject;
    const Class& objectClass() const override;

    OperationQueue();

    /// Queues an operation that is neither started nor on a queue yet, and retains it until it is
    /// finished.
    void addOperation(Ref<Operation>);

    /// The number of operations that wait or run.
    std::size_t operationCount() const;

    /// How many operations run at once at the most; 1 or more. Running ones are not stopped.
    void setMaxConcurrentOperationCount(std::size_t);
    std::size_t maxConcurrentOperationCount() const;

    /// While suspended no waiting operation begins; running ones go on.
    void setSuspended(bool);
    bool isSuspended() const;

    void cancelAllOperations();

    /// Waits until nothing runs, and nothing waits either unless the queue is suspended. Must not be
    /// called by an operation of this queue.
    void waitUntilAllOperationsAreFinished();

private:
    ~OperationQueue() override;

    class Implementation;
    std::shared_ptr<Implementation> _implementation;
};

/// The number of processors that this process may run on, at least 1 (sched_getaffinity(2)).
std::size_t onlineProcessorCount();

} // namespace zef

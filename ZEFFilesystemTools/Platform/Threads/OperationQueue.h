// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/Operation.h"

#include <cstddef>
#include <memory>

namespace zef {

/// Runs operations on threads of its own, started when they are needed and ended after a while
/// without work.
///
/// Among waiting operations the highest priority goes first, then the one added first. A queue that
/// is let go still runs what waits; if it is suspended, what waits is cancelled and finished
/// without having run. Threads that are still busy when the process exits do no harm. Nothing
/// survives fork(2): a child must not use its parent's queues. Any thread.
class ZEF_EXPORT OperationQueue final : public ZEFObject {
public:
    static const Class classObject;
    const Class& objectClass() const override;

    /// A queue that runs as many operations at once as there are processors; an idle thread leaves
    /// after `secondsIdleThreadsStay`.
    explicit OperationQueue(double secondsIdleThreadsStay = 5);

    /// Queues an operation that is neither started nor on a queue yet, and retains it until it is
    /// finished. Null does nothing. When the system refuses even the first thread, the operation
    /// runs on the calling thread instead, before this or `setSuspended` returns.
    void addOperation(Ref<Operation>);

    /// The number of operations that wait or run.
    std::size_t operationCount() const;

    /// How many operations run at once at the most; 1 or more. Running ones are not stopped.
    void setMaxConcurrentOperationCount(std::size_t);
    /// How many run at once at the most.
    std::size_t maxConcurrentOperationCount() const;

    /// While suspended no waiting operation begins; running ones go on.
    void setSuspended(bool);
    bool isSuspended() const;

    /// Cancels the operations that wait and those that run.
    void cancelAllOperations();

    /// Waits until nothing runs, and nothing waits either unless the queue is suspended. Must not
    /// be called by an operation of this queue.
    void waitUntilAllOperationsAreFinished();

private:
    ~OperationQueue() override;

    class Implementation;
    std::shared_ptr<Implementation> _implementation;
};

/// The number of processors that the calling thread and those it starts may run on, at least 1
/// (sched_getaffinity(2)).
ZEF_EXPORT std::size_t onlineProcessorCount();

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <atomic>
#include <cstdint>

namespace zef {

/// How soon a queue picks an operation among those that wait.
enum class QueuePriority : int { veryLow = -8, low = -4, normal = 0, high = 4, veryHigh = 8 };

/// A piece of work that runs once, on a queue's thread or on the caller's.
///
/// Subclasses override `main`. `cancel`, `isCancelled`, `isExecuting` and `isFinished` may be used
/// on any thread; everything `main` wrote is visible to a thread that has seen `isFinished`.
class ZEF_EXPORT Operation : public ZEFObject {
public:
    static const Class classObject;
    const Class& objectClass() const override;

    /// Runs `main` on the calling thread, unless the operation is cancelled; then it is finished.
    /// Must not be called twice, nor for an operation on a queue. An exception that `main` lets out
    /// is logged and ends the operation.
    void start();

    /// Asks the operation to stop at its next check; one that has not begun never runs `main`.
    void cancel();
    bool isCancelled() const;
    bool isExecuting() const;
    bool isFinished() const;

    QueuePriority queuePriority() const;
    /// Counts until a queue picks the operation.
    void setQueuePriority(QueuePriority);

protected:
    Operation();
    ~Operation() override;

    /// The work. Long work asks `isCancelled` now and then.
    virtual void main() = 0;

private:
    friend class OperationQueue;
    friend class WaitingOperations;

    enum class State : unsigned char { ready, executing, finished };

    /// Grows whenever some operation's priority changes after it was queued.
    static std::uint64_t waitingPriorityChanges();

    bool markQueued();
    void execute() noexcept;
    void runMain() noexcept;

    std::atomic<State> _state{ State::ready };
    std::atomic<bool> _cancelled{ false };
    std::atomic<bool> _queued{ false };
    std::atomic<QueuePriority> _queuePriority{ QueuePriority::normal };
};

} // namespace zef

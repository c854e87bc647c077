// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/Operation.h"

#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include <cassert>
#include <exception>

namespace zef {
namespace {

std::atomic<std::uint64_t> changedPriorities{ 0 };

} // namespace

const Class Operation::classObject{ "Operation", &ZEFObject::classObject };

const Class& Operation::objectClass() const
{
    return classObject;
}

Operation::Operation() = default;

Operation::~Operation() = default;

void Operation::start()
{
    assert(!_queued && "an operation on a queue is started by the queue");
    if (!_queued)
        execute();
}

void Operation::cancel()
{
    _cancelled.store(true, std::memory_order_relaxed);
}

bool Operation::isCancelled() const
{
    return _cancelled.load(std::memory_order_relaxed);
}

bool Operation::isExecuting() const
{
    return _state.load(std::memory_order_acquire) == State::executing;
}

bool Operation::isFinished() const
{
    return _state.load(std::memory_order_acquire) == State::finished;
}

QueuePriority Operation::queuePriority() const
{
    return _queuePriority.load();
}

// Sequentially consistent, like the mark and the queue's look at the priority after it: either this
// sees the mark, or the queue sees the new priority.
void Operation::setQueuePriority(QueuePriority priority)
{
    _queuePriority.store(priority);
    if (_queued.load())
        ++changedPriorities;
}

std::uint64_t Operation::waitingPriorityChanges()
{
    return changedPriorities.load();
}

bool Operation::markQueued()
{
    return !_queued.exchange(true) && _state.load(std::memory_order_relaxed) == State::ready;
}

void Operation::execute() noexcept
{
    const Ref<Operation> protector(this);
    const auto isCancelledBeforehand = isCancelled();
    auto expected = State::ready;
    const auto begins = _state.compare_exchange_strong(
        expected, isCancelledBeforehand ? State::finished : State::executing);
    assert(begins && "an operation is started once");
    if (!begins || isCancelledBeforehand)
        return;

    runMain();
    // Everything that `main` wrote comes before this for whoever reads the state.
    _state.store(State::finished, std::memory_order_release);
}

void Operation::runMain() noexcept
{
    try {
        main();
    } catch (const std::exception& exception) {
        log("%s ended by an exception: %s", description().c_str(), exception.what());
    } catch (...) {
        log("%s ended by an exception of unknown type", description().c_str());
    }
}

} // namespace zef

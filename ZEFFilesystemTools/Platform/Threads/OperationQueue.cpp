// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "ZEFFilesystemTools/Platform/Threads/ThreadStarter.h"
#include "ZEFFilesystemTools/Platform/Threads/WaitingOperations.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace zef {

/// What the queue and its threads share; lives as long as either.
///
/// Wherever an operation may begin there is a thread that will look: one that is idle, one that
/// will look again when its operation is finished, or one that is about to be started.
class ZEF_INTERNAL OperationQueue::Implementation
    : public std::enable_shared_from_this<Implementation> {
public:
    explicit Implementation(double secondsIdleThreadsStay)
        : _idleTime(std::clamp(secondsIdleThreadsStay, 0.0, 1e9))
        , _maxConcurrentOperationCount(onlineProcessorCount())
    {
    }

    void add(Ref<Operation>);
    std::size_t operationCount() const;
    void setMaxConcurrentOperationCount(std::size_t);
    std::size_t maxConcurrentOperationCount() const;
    void setSuspended(bool);
    bool isSuspended() const;
    void cancelAllOperations();
    void waitUntilFinished();
    void close();

private:
    using Lock = std::unique_lock<std::mutex>;

    bool mayBegin() const;
    bool needsThread() const;
    void startThreads(Lock&);
    void work();
    bool waitForWork(Lock&);
    void runNext(Lock&);

    const std::chrono::duration<double> _idleTime;
    mutable std::mutex _mutex;
    std::condition_variable _workCondition;
    std::condition_variable _finishedCondition;
    WaitingOperations _waiting;
    // Borrowed from the threads that execute them.
    std::vector<Operation*> _executing;
    // Counts an operation until its thread has let go of it.
    std::size_t _runningCount = 0;
    // Threads without an operation, also those that are only just being started.
    std::size_t _idleThreadCount = 0;
    std::size_t _maxConcurrentOperationCount;
    bool _suspended = false;
    bool _closed = false;
};

void OperationQueue::Implementation::add(Ref<Operation> operation)
{
    Lock lock(_mutex);
    _waiting.add(std::move(operation));
    _workCondition.notify_one();
    startThreads(lock);
}

bool OperationQueue::Implementation::mayBegin() const
{
    return !_suspended && !_waiting.isEmpty() && _runningCount < _maxConcurrentOperationCount;
}

bool OperationQueue::Implementation::needsThread() const
{
    if (!mayBegin())
        return false;
    const auto room = _maxConcurrentOperationCount - _runningCount;
    return _idleThreadCount < std::min(_waiting.count(), room);
}

void OperationQueue::Implementation::startThreads(Lock& lock)
{
    while (needsThread()) {
        ++_idleThreadCount;
        lock.unlock();
        const auto isStarted = ThreadStarter::shared().start(
            "zef-operations", [self = shared_from_this()] { self->work(); });
        lock.lock();
        if (isStarted)
            continue;
        --_idleThreadCount;
        // Without any thread nobody else would ever look: this one has to do the work.
        while (!_idleThreadCount && !_runningCount && mayBegin())
            runNext(lock);
        _workCondition.notify_one();
        return;
    }
}

void OperationQueue::Implementation::work()
{
    Lock lock(_mutex);
    while (waitForWork(lock)) {
        --_idleThreadCount;
        runNext(lock);
        ++_idleThreadCount;
    }
    --_idleThreadCount;
}

// False if the thread should leave.
bool OperationQueue::Implementation::waitForWork(Lock& lock)
{
    _workCondition.wait_for(lock, _idleTime, [this] { return _closed || mayBegin(); });
    return mayBegin();
}

void OperationQueue::Implementation::runNext(Lock& lock)
{
    auto operation = _waiting.takeNext();
    auto* const borrowed = operation.get();
    _executing.push_back(borrowed);
    ++_runningCount;
    lock.unlock();
    borrowed->execute();
    lock.lock();
    std::erase(_executing, borrowed);
    // The last release may run any code, so no lock is held; whoever waits for the queue waits for
    // this too.
    lock.unlock();
    operation = nullptr;
    lock.lock();
    if (!--_runningCount)
        _finishedCondition.notify_all();
}

std::size_t OperationQueue::Implementation::operationCount() const
{
    std::lock_guard guard(_mutex);
    return _waiting.count() + _runningCount;
}

void OperationQueue::Implementation::setMaxConcurrentOperationCount(std::size_t count)
{
    Lock lock(_mutex);
    _maxConcurrentOperationCount = std::max<std::size_t>(count, 1);
    _workCondition.notify_all();
    startThreads(lock);
}

std::size_t OperationQueue::Implementation::maxConcurrentOperationCount() const
{
    std::lock_guard guard(_mutex);
    return _maxConcurrentOperationCount;
}

void OperationQueue::Implementation::setSuspended(bool suspended)
{
    Lock lock(_mutex);
    _suspended = suspended;
    _finishedCondition.notify_all();
    _workCondition.notify_all();
    startThreads(lock);
}

bool OperationQueue::Implementation::isSuspended() const
{
    std::lock_guard guard(_mutex);
    return _suspended;
}

void OperationQueue::Implementation::cancelAllOperations()
{
    std::lock_guard guard(_mutex);
    _waiting.cancelAll();
    for (auto* operation : _executing)
        operation->cancel();
}

void OperationQueue::Implementation::waitUntilFinished()
{
    Lock lock(_mutex);
    _finishedCondition.wait(
        lock, [this] { return !_runningCount && (_suspended || _waiting.isEmpty()); });
}

void OperationQueue::Implementation::close()
{
    std::vector<Ref<Operation>> dropped;
    {
        std::lock_guard guard(_mutex);
        _closed = true;
        if (_suspended)
            dropped = _waiting.takeAll();
        _workCondition.notify_all();
    }
    for (const auto& operation : dropped) {
        operation->cancel();
        operation->execute();
    }
}

const Class OperationQueue::classObject{ "OperationQueue", &ZEFObject::classObject };

const Class& OperationQueue::objectClass() const
{
    return classObject;
}

OperationQueue::OperationQueue(double secondsIdleThreadsStay)
    : _implementation(std::make_shared<Implementation>(secondsIdleThreadsStay))
{
}

OperationQueue::~OperationQueue()
{
    _implementation->close();
}

void OperationQueue::addOperation(Ref<Operation> operation)
{
    if (!operation)
        return;
    const auto isNew = operation->markQueued();
    assert(isNew && "an operation is added to one queue, once, and not after it was started");
    if (isNew)
        _implementation->add(std::move(operation));
}

std::size_t OperationQueue::operationCount() const
{
    return _implementation->operationCount();
}

void OperationQueue::setMaxConcurrentOperationCount(std::size_t count)
{
    _implementation->setMaxConcurrentOperationCount(count);
}

std::size_t OperationQueue::maxConcurrentOperationCount() const
{
    return _implementation->maxConcurrentOperationCount();
}

void OperationQueue::setSuspended(bool suspended)
{
    _implementation->setSuspended(suspended);
}

bool OperationQueue::isSuspended() const
{
    return _implementation->isSuspended();
}

void OperationQueue::cancelAllOperations()
{
    _implementation->cancelAllOperations();
}

void OperationQueue::waitUntilAllOperationsAreFinished()
{
    _implementation->waitUntilFinished();
}

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/ThreadStarter.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

/// Stands in for the system's starter of threads while it lives: refuses threads beyond a limit and
/// knows how many it has started and how many of them are through.
class FakeThreadStarter final : public zef::ThreadStarter {
public:
    explicit FakeThreadStarter(std::size_t limit)
        : _limit(limit)
    {
        replaceShared(this);
    }

    ~FakeThreadStarter() override { replaceShared(nullptr); }

    bool start(const char* name, std::function<void()> body) override
    {
        if (!admit())
            return false;
        const auto isStarted = system().start(
            name, [threads = _threads, body = std::move(body)]() mutable {
                body();
                body = nullptr;
                threads->noteEnd();
            });
        if (!isStarted)
            _threads->noteEnd();
        return isStarted;
    }

    std::size_t startedCount() const
    {
        std::lock_guard guard(_threads->mutex);
        return _threads->started;
    }

    /// Waits until every thread that was started is through.
    void waitUntilAllHaveEnded()
    {
        std::unique_lock lock(_threads->mutex);
        _threads->condition.wait(lock, [this] { return _threads->ended == _threads->started; });
    }

private:
    // Shared with the threads, which may end later than the test.
    struct Threads {
        void noteEnd()
        {
            std::lock_guard guard(mutex);
            ++ended;
            condition.notify_all();
        }

        std::mutex mutex;
        std::condition_variable condition;
        std::size_t started = 0;
        std::size_t ended = 0;
    };

    bool admit()
    {
        std::lock_guard guard(_threads->mutex);
        if (_threads->started >= _limit)
            return false;
        ++_threads->started;
        return true;
    }

    std::size_t _limit;
    std::shared_ptr<Threads> _threads = std::make_shared<Threads>();
};

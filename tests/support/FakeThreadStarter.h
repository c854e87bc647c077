// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/ThreadStarter.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// Replaces the system's thread starter while it lives: refuses threads beyond a limit, and counts
/// those that it started and those that have ended.
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
        if (_holdsBack) {
            _heldBack.emplace_back(name, std::move(body));
            return true;
        }
        return startThread(name, std::move(body));
    }

    /// From now on so many threads may be started in all.
    void setLimit(std::size_t limit)
    {
        std::lock_guard guard(_threads->mutex);
        _limit = limit;
    }

    /// From now on threads seem to start but run only after `letGo`. On the test's thread alone.
    void holdBack() { _holdsBack = true; }

    void letGo()
    {
        _holdsBack = false;
        for (auto& [name, body] : std::exchange(_heldBack, {}))
            startThread(name.c_str(), std::move(body));
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
    bool startThread(const char* name, std::function<void()> body)
    {
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
    bool _holdsBack = false;
    std::vector<std::pair<std::string, std::function<void()>>> _heldBack;
    std::shared_ptr<Threads> _threads = std::make_shared<Threads>();
};

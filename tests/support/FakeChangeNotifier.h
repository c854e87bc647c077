// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"
#include "ZEFFilesystemTools/Platform/Notifier/ThreadRounds.h"

#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

/// A notifier whose events and failures the test decides. It does not touch the disk: unless the
/// test says otherwise, every object exists. Any thread.
class FakeChangeNotifier final : public zef::ChangeNotifier {
public:
    /// Something happens to the object of `ref`.
    void fire(const zef::FSRef& ref) { fire(ref.device(), ref.inode()); }
    void fire(std::uint32_t device, std::uint64_t inode)
    {
        std::lock_guard lock(_mutex);
        _queue.emplace_back(device, inode);
    }

    /// The object goes, which is the last that happens to it; it can't be opened from now on.
    void vanish(const zef::FSRef& ref)
    {
        fire(ref);
        std::lock_guard lock(_mutex);
        _gone.insert(keyOf(ref));
    }

    /// From now on there can be no queue.
    void setQueueFails(bool fails) { _queueFails = fails; }

    /// From now on nothing can be opened.
    void setOpenFails(bool fails) { _openFails = fails; }

    /// From now on every poll fails with this errno value; 0 ends it.
    void setPollError(int error) { _pollError = error; }

    std::size_t pollCount() const { return _pollCount; }

    std::size_t openTokenCount() const
    {
        std::lock_guard lock(_mutex);
        return _tokens.size();
    }

    /// How many tokens are open on the object of `ref`.
    std::size_t openTokenCount(const zef::FSRef& ref) const
    {
        std::lock_guard lock(_mutex);
        std::size_t count = 0;
        for (const auto& [number, token] : _tokens)
            count += token.key == keyOf(ref);
        return count;
    }

    int createQueue() override { return _queueFails ? -1 : 0; }

    int open(const zef::FSRef& ref, const zef::FileURL&) override
    {
        std::lock_guard lock(_mutex);
        if (_openFails || _gone.contains(keyOf(ref)))
            return 0;
        drain(); // what happened before is not an event of the new token
        _tokens[++_lastToken] = { keyOf(ref), false };
        return _lastToken;
    }

    int poll(int number, const zef::FSRef&, const zef::FileURL&) override
    {
        std::lock_guard lock(_mutex);
        ++_pollCount;
        const auto token = _tokens.find(number);
        if (const int error = token == _tokens.end() ? EBADF : _pollError.load()) {
            errno = error;
            return -1;
        }
        if (!_rounds.isOpen())
            drain();
        return std::exchange(token->second.isMarked, false) ? 1 : 0;
    }

    void close(int number) override
    {
        std::lock_guard lock(_mutex);
        _tokens.erase(number);
    }

    void beginRound() override
    {
        std::lock_guard lock(_mutex);
        if (_rounds.begin())
            drain();
    }

    void endRound() override
    {
        std::lock_guard lock(_mutex);
        _rounds.end();
    }

    void setWatchLimit(std::size_t) override { }

private:
    using Key = std::pair<std::uint32_t, std::uint64_t>;

    struct Token {
        Key key;
        bool isMarked;
    };

    static Key keyOf(const zef::FSRef& ref) { return { ref.device(), ref.inode() }; }

    void drain()
    {
        for (const auto& key : std::exchange(_queue, {})) {
            for (auto& [number, token] : _tokens)
                token.isMarked |= token.key == key;
        }
    }

    mutable std::mutex _mutex;
    std::vector<Key> _queue;
    std::set<Key> _gone;
    std::map<int, Token> _tokens;
    zef::ThreadRounds _rounds;
    std::atomic<std::size_t> _pollCount{ 0 };
    int _lastToken = 0;
    std::atomic<int> _pollError{ 0 };
    std::atomic<bool> _queueFails{ false };
    std::atomic<bool> _openFails{ false };
};

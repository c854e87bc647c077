// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <limits>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace zef {

/// Remembers values for a while, and when the limits are reached only the latest ones.
///
/// The caller passes the time, in seconds on a clock that never goes backwards. Any thread; no
/// value is destroyed while the lock is held.
template <typename Key, typename Value> class ExpiringCache {
public:
    static constexpr auto unlimited = std::numeric_limits<std::size_t>::max();

    struct Limits {
        /// How long a value is good.
        double seconds;
        std::size_t values = unlimited;
        /// What all values together may cost. A single one may cost more.
        std::size_t cost = unlimited;
    };

    explicit ExpiringCache(const Limits& limits)
        : _limits(limits)
    {
    }

    bool isEmpty() const { return _isEmpty.load(std::memory_order_relaxed); }

    /// The value for `key`; none if it isn't known or too old. Takes no lock while empty.
    [[nodiscard]] std::optional<Value> find(const Key& key, double now) const
    {
        if (isEmpty())
            return std::nullopt;
        std::lock_guard lock(_mutex);
        const auto found = _index.find(key);
        if (found == _index.end() || now >= found->second->validUntil)
            return std::nullopt;
        return found->second->value;
    }

    /// Remembers `value`, which was right at the time `now`, in place of an earlier one.
    void insert(const Key& key, Value value, double now, std::size_t cost = 1)
    {
        Entries removed;
        Entries added;
        added.push_back({ key, std::move(value), now + _limits.seconds, cost });
        std::lock_guard lock(_mutex);
        if (const auto earlier = _index.find(key); earlier != _index.end())
            remove(earlier->second, removed);
        _index.emplace(key, added.begin());
        _entries.splice(_entries.end(), added);
        _cost += cost;
        removeOld(now, removed);
        while (_index.size() > 1 && (_index.size() > _limits.values || _cost > _limits.cost))
            remove(_entries.begin(), removed);
        _isEmpty.store(false, std::memory_order_relaxed);
    }

    void forgetOld(double now)
    {
        Entries removed;
        std::lock_guard lock(_mutex);
        removeOld(now, removed);
        _isEmpty.store(_entries.empty(), std::memory_order_relaxed);
    }

    void forgetAll() { forgetOld(std::numeric_limits<double>::infinity()); }

private:
    struct Entry {
        Key key;
        Value value;
        double validUntil;
        std::size_t cost;
    };
    using Entries = std::list<Entry>;

    void remove(typename Entries::iterator entry, Entries& removed)
    {
        _index.erase(entry->key);
        _cost -= entry->cost;
        removed.splice(removed.end(), _entries, entry);
    }

    void removeOld(double now, Entries& removed)
    {
        while (!_entries.empty() && now >= _entries.front().validUntil)
            remove(_entries.begin(), removed);
    }

    const Limits _limits;
    mutable std::mutex _mutex;
    /// The latest one is the last.
    Entries _entries;
    std::map<Key, typename Entries::iterator> _index;
    std::size_t _cost = 0;
    std::atomic<bool> _isEmpty{ true };
};

} // namespace zef

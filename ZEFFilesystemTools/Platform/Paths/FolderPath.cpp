// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/FolderPath.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

#include <functional>
#include <mutex>
#include <unordered_set>

namespace zef {

// Holds every folder path in use, weakly. Paths may be long, so a hash is computed once.
struct FolderPath::Table {
    struct Key {
        std::string_view bytes;
        std::size_t hash;
    };

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const FolderPath* path) const { return path->_hash; }
        std::size_t operator()(const Key& key) const { return key.hash; }
    };

    struct Equal {
        using is_transparent = void;
        bool operator()(const FolderPath* left, const FolderPath* right) const
        {
            return left == right;
        }
        bool operator()(const Key& key, const FolderPath* path) const
        {
            return key.bytes == path->_bytes;
        }
    };

    static Table& shared() { return immortal<Table>(); }

    std::mutex mutex;
    std::unordered_set<const FolderPath*, Hash, Equal> paths;
};

Ref<const FolderPath> FolderPath::of(std::string_view bytes)
{
    const Table::Key key{ bytes, std::hash<std::string_view>()(bytes) };
    auto& all = Table::shared();
    std::lock_guard lock(all.mutex);
    const auto found = all.paths.find(key);
    if (found != all.paths.end()) {
        if ((*found)->retainIfAlive())
            return Ref<const FolderPath>::adopt(*found);
        // Its last user is just letting it go; that thread sees that the entry is not its own.
        all.paths.erase(found);
    }
    auto* path = new FolderPath(bytes, key.hash);
    all.paths.insert(path);
    return Ref<const FolderPath>::adopt(path);
}

void FolderPath::release() const noexcept
{
    if (_retainCount.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    {
        auto& all = Table::shared();
        std::lock_guard lock(all.mutex);
        all.paths.erase(this);
    }
    delete this;
}

bool FolderPath::retainIfAlive() const noexcept
{
    auto count = _retainCount.load(std::memory_order_relaxed);
    while (count) {
        if (_retainCount.compare_exchange_weak(count, count + 1, std::memory_order_relaxed))
            return true;
    }
    return false;
}

} // namespace zef

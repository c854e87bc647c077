// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/FolderPath.h"

#include <mutex>
#include <unordered_map>

namespace zef {
namespace {

// Holds every folder path in use, weakly; the key's bytes are those of the value.
struct Table {
    std::mutex mutex;
    std::unordered_map<std::string_view, const FolderPath*> paths;
};

Table& table()
{
    static auto& instance = *new Table; // never destroyed: late threads may still let URLs go
    return instance;
}

} // namespace

Ref<const FolderPath> FolderPath::of(std::string_view bytes)
{
    auto& all = table();
    std::lock_guard lock(all.mutex);
    auto found = all.paths.find(bytes);
    if (found != all.paths.end()) {
        if (found->second->retainIfAlive())
            return Ref<const FolderPath>::adopt(found->second);
        // Its last user is just letting it go; that thread sees that the entry is not its own.
        all.paths.erase(found);
    }
    auto* path = new FolderPath(bytes);
    all.paths.emplace(path->bytes(), path);
    return Ref<const FolderPath>::adopt(path);
}

void FolderPath::release() const noexcept
{
    if (_retainCount.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    {
        auto& all = table();
        std::lock_guard lock(all.mutex);
        auto found = all.paths.find(_bytes);
        if (found != all.paths.end() && found->second == this)
            all.paths.erase(found);
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

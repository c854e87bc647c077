// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace tool {

/// Knows every living item by its number without keeping it alive. Any thread.
class ItemNumbers {
public:
    static ItemNumbers& shared();

    /// A number that no item had before; the item's until `remove`.
    std::uint64_t add(ZEFFileItem&);
    void remove(std::uint64_t number);

    /// The item, or nil when there never was one with this number or it is gone.
    zef::Ref<ZEFFileItem> item(std::uint64_t number);

private:
    std::mutex _mutex;
    std::uint64_t _lastNumber = 0;
    std::unordered_map<std::uint64_t, ZEFFileItem*> _items;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <unordered_set>

/// File items told apart by `isEqual`, and retained. One thread at a time.
class ZEF_EXPORT ZEFFileItemSet final : public ZEFObject {
public:
    explicit ZEFFileItemSet(std::size_t capacity) { _items.reserve(capacity); }

    std::size_t count() const { return _items.size(); }

    /// Returns false if an equal one was there already.
    bool insert(zef::Ref<ZEFFileItem> item) { return _items.insert(std::move(item)).second; }

    bool contains(const zef::Ref<ZEFFileItem>& item) const { return _items.contains(item); }

private:
    std::unordered_set<zef::Ref<ZEFFileItem>, zef::ObjectHash, zef::ObjectEqual> _items;
};

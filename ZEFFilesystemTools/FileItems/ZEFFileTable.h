// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Ref.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

class ZEFFileItem;

/// The registered items of one device, found by their keys and held weakly.
///
/// Guards its own slots, so that an item which dies may take its entry out while the factory works;
/// never freed. Any thread.
class ZEFFileTable {
public:
    explicit ZEFFileTable(std::size_t capacity);

    /// The item under `key`, retained; null if there is none. An item whose last reference is
    /// just going is taken out and forgets its table, so that it can't remove a successor.
    zef::Ref<ZEFFileItem> retainedItem(std::uint64_t key);

    /// Enters `item` (borrowed) under `key`, in place of any other, and sets its table.
    void insert(std::uint64_t key, ZEFFileItem* item);

    /// Takes out whatever is entered under `key`.
    void remove(std::uint64_t key);

    /// Takes `item` out and lets it forget its table.
    void detach(ZEFFileItem* item);

    /// For an item that dies: takes out whatever is entered under its key, unless that is another
    /// file's or the item has forgotten its table.
    void removeDying(ZEFFileItem* item);

    std::size_t count() const;

    /// One line for each item, made with `ZEFFileMapDescriptionCallback`.
    std::string description();

private:
    static constexpr std::uint8_t emptyTag = 0;
    static constexpr std::uint8_t removedTag = 1;
    static constexpr std::uint8_t usedTag = 0x80;

    std::size_t slotOfKey(std::uint64_t key) const;
    void enter(std::uint64_t key, ZEFFileItem* item);
    void clearSlot(std::size_t slot);
    void makeRoom();
    std::size_t mask() const { return _tags.size() - 1; }

    mutable std::mutex _mutex;
    /// One byte a slot rules out most slots that don't match, without a look into the items'
    /// memory.
    std::vector<std::uint8_t> _tags;
    std::vector<ZEFFileItem*> _items;
    std::size_t _count = 0;
    std::size_t _occupied = 0;
};

/// The description of a value of the registry's tables.
std::string ZEFFileMapDescriptionCallback(ZEFFileTable* table, const ZEFFileItem* value);

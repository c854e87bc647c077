// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <bit>

namespace {

constexpr std::size_t noSlot = static_cast<std::size_t>(-1);

// Neighbouring files have neighbouring inode numbers; this spreads them over all bits.
std::uint64_t mixed(std::uint64_t key)
{
    key *= 0x9e3779b97f4a7c15u;
    return key ^ (key >> 32);
}

// At most seven eighths of the slots may be occupied, or probing gets slow.
std::size_t slotCountFor(std::size_t capacity)
{
    return std::bit_ceil(capacity + capacity / 7 + 8);
}

} // namespace

ZEFFileTable::ZEFFileTable(std::size_t capacity)
    : _tags(slotCountFor(capacity), emptyTag)
    , _items(_tags.size(), nullptr)
{
}

zef::Ref<ZEFFileItem> ZEFFileTable::retainedItem(std::uint64_t key)
{
    std::lock_guard lock(_mutex);
    const auto slot = slotOfKey(key);
    if (slot == noSlot)
        return nullptr;
    auto* item = _items[slot];
    if (item->retainIfAlive())
        return zef::Ref<ZEFFileItem>::adopt(item);
    clearSlot(slot);
    item->ZEF_setContainer(nullptr);
    return nullptr;
}

void ZEFFileTable::insert(std::uint64_t key, ZEFFileItem* item)
{
    std::lock_guard lock(_mutex);
    const auto slot = slotOfKey(key);
    if (slot != noSlot)
        clearSlot(slot);
    makeRoom();
    enter(key, item);
    item->ZEF_setContainer(this);
}

void ZEFFileTable::remove(std::uint64_t key)
{
    std::lock_guard lock(_mutex);
    const auto slot = slotOfKey(key);
    if (slot != noSlot)
        clearSlot(slot);
}

void ZEFFileTable::detach(ZEFFileItem* item)
{
    std::lock_guard lock(_mutex);
    const auto slot = slotOfKey(item->fileiNodeHash());
    if (slot != noSlot && _items[slot] == item)
        clearSlot(slot);
    item->ZEF_setContainer(nullptr);
}

void ZEFFileTable::removeDying(ZEFFileItem* item)
{
    std::lock_guard lock(_mutex);
    if (!item->ZEF_container())
        return;
    const auto slot = slotOfKey(item->fileiNodeHash());
    // The number may meanwhile be another file's.
    if (slot != noSlot && !item->ZEF_isAnotherObject(*_items[slot]))
        clearSlot(slot);
}

std::size_t ZEFFileTable::count() const
{
    std::lock_guard lock(_mutex);
    return _count;
}

std::string ZEFFileTable::description()
{
    std::lock_guard lock(_mutex);
    std::string text;
    for (const auto* item : _items) {
        if (item)
            text += ZEFFileMapDescriptionCallback(this, item) + "\n";
    }
    return text;
}

std::size_t ZEFFileTable::slotOfKey(std::uint64_t key) const
{
    const auto hash = mixed(key);
    const auto tag = static_cast<std::uint8_t>(usedTag | (hash >> 57));
    for (auto slot = hash & mask(); _tags[slot] != emptyTag; slot = (slot + 1) & mask()) {
        if (_tags[slot] == tag && _items[slot]->fileiNodeHash() == key)
            return slot;
    }
    return noSlot;
}

void ZEFFileTable::enter(std::uint64_t key, ZEFFileItem* item)
{
    const auto hash = mixed(key);
    auto slot = hash & mask();
    while (_tags[slot] >= usedTag)
        slot = (slot + 1) & mask();
    if (_tags[slot] == emptyTag)
        ++_occupied;
    _tags[slot] = static_cast<std::uint8_t>(usedTag | (hash >> 57));
    _items[slot] = item;
    ++_count;
}

void ZEFFileTable::clearSlot(std::size_t slot)
{
    _items[slot] = nullptr;
    --_count;
    // A removed slot may be called empty when no probe goes on behind it.
    const bool endsProbe = _tags[(slot + 1) & mask()] == emptyTag;
    _tags[slot] = endsProbe ? emptyTag : removedTag;
    if (endsProbe)
        --_occupied;
}

void ZEFFileTable::makeRoom()
{
    if (_occupied + 1 <= _tags.size() - _tags.size() / 8)
        return;
    auto items = std::move(_items);
    const auto slots = slotCountFor(_count + _count / 4);
    _tags.assign(slots, emptyTag);
    _items.assign(slots, nullptr);
    _count = 0;
    _occupied = 0;
    for (auto* item : items) {
        if (item)
            enter(item->fileiNodeHash(), item);
    }
}

std::string ZEFFileMapDescriptionCallback(ZEFFileTable*, const ZEFFileItem* value)
{
    return value ? value->description() : "(null)";
}

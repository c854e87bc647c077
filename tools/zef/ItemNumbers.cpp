// SPDX-License-Identifier: MIT
#include "tools/zef/ItemNumbers.h"

namespace tool {

ItemNumbers& ItemNumbers::shared()
{
    static auto& numbers = *new ItemNumbers; // never destroyed: threads may still let items go
    return numbers;
}

std::uint64_t ItemNumbers::add(ZEFFileItem& item)
{
    const std::lock_guard lock(_mutex);
    _items.emplace(++_lastNumber, &item);
    return _lastNumber;
}

void ItemNumbers::remove(std::uint64_t number)
{
    const std::lock_guard lock(_mutex);
    _items.erase(number);
}

zef::Ref<ZEFFileItem> ItemNumbers::item(std::uint64_t number)
{
    const std::lock_guard lock(_mutex);
    const auto found = _items.find(number);
    // An item may be dying on another thread; its destructor waits for the lock.
    if (found == _items.end() || !found->second->retainIfAlive())
        return nullptr;
    return zef::Ref<ZEFFileItem>::adopt(found->second);
}

} // namespace tool

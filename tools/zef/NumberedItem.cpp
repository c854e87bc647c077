// SPDX-License-Identifier: MIT
#include "tools/zef/NumberedItem.h"

#include <mutex>
#include <unordered_map>

namespace tool {
namespace {

// Knows every living item by its number without keeping it alive. Any thread.
class ItemNumbers {
public:
    static ItemNumbers& shared()
    {
        static auto& numbers = *new ItemNumbers; // never destroyed: threads may still let items go
        return numbers;
    }

    // A number that no item had before; the item's until `remove`.
    std::uint64_t add(ZEFFileItem& item)
    {
        const std::lock_guard lock(_mutex);
        _items.emplace(++_lastNumber, &item);
        return _lastNumber;
    }

    void remove(std::uint64_t number)
    {
        const std::lock_guard lock(_mutex);
        _items.erase(number);
    }

    zef::Ref<ZEFFileItem> item(std::uint64_t number)
    {
        const std::lock_guard lock(_mutex);
        const auto found = _items.find(number);
        // An item may be dying on another thread; its destructor waits for the lock.
        if (found == _items.end() || !found->second->retainIfAlive())
            return nullptr;
        return zef::Ref<ZEFFileItem>::adopt(found->second);
    }

private:
    std::mutex _mutex;
    std::uint64_t _lastNumber = 0;
    std::unordered_map<std::uint64_t, ZEFFileItem*> _items;
};

} // namespace

class NumberedItem::Observer final : public ZEFObject { };

NumberedItem::NumberedItem(ZEFFileItem& item)
    : _item(item)
    , _number(ItemNumbers::shared().add(item))
{
}

NumberedItem::~NumberedItem()
{
    ItemNumbers::shared().remove(_number);
}

NumberedItem& NumberedItem::of(ZEFFileItem& item)
{
    return dynamic_cast<NumberedItem&>(item);
}

zef::Ref<ZEFFileItem> NumberedItem::itemWithNumber(std::uint64_t number)
{
    return ItemNumbers::shared().item(number);
}

bool NumberedItem::registerObserverNamed(const std::string& name)
{
    return _item.registerFileObserver(observerNamed(name));
}

bool NumberedItem::removeObserverNamed(const std::string& name)
{
    if (!hasObserverNamed(name))
        return false;
    const bool removed = _item.removeFileObserver(observerNamed(name));
    _observers->erase(name);
    return removed;
}

bool NumberedItem::hasObserverNamed(const std::string& name) const
{
    return _observers && _observers->contains(name);
}

ZEFFileChanges NumberedItem::changesForObserverNamed(const std::string& name)
{
    return _item.changesForObserver(observerNamed(name));
}

std::optional<ZEFFileEvent> NumberedItem::updateForObserverNamed(const std::string& name)
{
    _lastEvent = std::nullopt;
    return _item.updateForObserver(observerNamed(name)) ? _lastEvent : std::nullopt;
}

void NumberedItem::noteEvent(const ZEFChangeRecord* record)
{
    _lastEvent = record->event();
}

NumberedItem::Observer* NumberedItem::observerNamed(const std::string& name)
{
    if (!_observers)
        _observers = std::make_unique<Observers>();
    auto& observer = (*_observers)[name];
    if (!observer)
        observer = zef::makeRef<Observer>();
    return observer.get();
}

std::uint64_t numberOf(const ZEFFileItem& item)
{
    return dynamic_cast<const NumberedItem&>(item).number();
}

} // namespace tool

// SPDX-License-Identifier: MIT
#include "tools/zef/NumberedItem.h"

#include "tools/zef/ItemNumbers.h"

namespace tool {

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

// SPDX-License-Identifier: MIT
#include "tools/zef/NumberedFileItem.h"

#include "tools/zef/ItemNumbers.h"

namespace tool {

class NumberedFileItem::Observer final : public ZEFObject { };

const ZEFFileItemClass NumberedFileItem::classObject(
    "ZEFFileItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<NumberedFileItem>);

NumberedFileItem::NumberedFileItem(const zef::FileURL& url, const zef::FSRef* fsRef,
    const zef::FileURL& pathRep, const zef::Stat* statInfo)
    : ZEFFileItem(url, fsRef, pathRep, statInfo)
    , _number(ItemNumbers::shared().add(*this))
{
}

NumberedFileItem::~NumberedFileItem()
{
    ItemNumbers::shared().remove(_number);
}

bool NumberedFileItem::registerObserverNamed(const std::string& name)
{
    return registerFileObserver(observerNamed(name));
}

bool NumberedFileItem::removeObserverNamed(const std::string& name)
{
    if (!hasObserverNamed(name))
        return false;
    const bool removed = removeFileObserver(observerNamed(name));
    _observers->erase(name);
    return removed;
}

bool NumberedFileItem::hasObserverNamed(const std::string& name) const
{
    return _observers && _observers->contains(name);
}

ZEFFileChanges NumberedFileItem::changesForObserverNamed(const std::string& name)
{
    return changesForObserver(observerNamed(name));
}

std::optional<ZEFFileEvent> NumberedFileItem::updateForObserverNamed(const std::string& name)
{
    _lastEvent = std::nullopt;
    return updateForObserver(observerNamed(name)) ? _lastEvent : std::nullopt;
}

void NumberedFileItem::updateForEvent(const ZEFChangeRecord* record)
{
    _lastEvent = record->event();
}

NumberedFileItem::Observer* NumberedFileItem::observerNamed(const std::string& name)
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
    return static_cast<const NumberedFileItem&>(item).number();
}

} // namespace tool

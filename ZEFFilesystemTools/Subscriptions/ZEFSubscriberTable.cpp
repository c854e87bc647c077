// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFSubscriberTable.h"

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionProtocol.h"

#include <algorithm>

namespace {

constexpr std::size_t initialCapacity = 15;

} // namespace

ZEFSubscriberTable::ZEFSubscriberTable()
{
    _entries.reserve(initialCapacity);
}

ZEFSubscriberTable::~ZEFSubscriberTable()
{
    for (const auto& entry : _entries)
        --entry.subscriber->_subscriptions;
}

void ZEFSubscriberTable::add(ZEFObject* object)
{
    auto* subscriber = zef::protocolCast<ZEFDirectorySubscriptionProtocol>(object);
    if (!subscriber || contains(object))
        return;
    _entries.push_back({ object, subscriber });
    ++subscriber->_subscriptions;
}

void ZEFSubscriberTable::remove(const ZEFObject* object)
{
    const auto found = find(object);
    if (found == _entries.end())
        return;
    --found->subscriber->_subscriptions;
    _entries.erase(found);
}

bool ZEFSubscriberTable::contains(const ZEFObject* object) const
{
    return find(object) != _entries.end();
}

bool ZEFSubscriberTable::containsIdentical(const ZEFObject* object) const
{
    return std::any_of(_entries.begin(), _entries.end(),
        [object](const Entry& entry) { return entry.object == object; });
}

std::vector<ZEFSubscriberTable::Entry>::const_iterator ZEFSubscriberTable::find(
    const ZEFObject* object) const
{
    return std::find_if(_entries.begin(), _entries.end(), [object](const Entry& entry) {
        return object && (entry.object == object || object->isEqual(entry.object));
    });
}

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <cstdio>
#include <functional>
#include <limits>

namespace {

constexpr auto immortalCount = std::numeric_limits<std::uint32_t>::max();

} // namespace

const zef::Class ZEFObject::classObject{ "ZEFObject", nullptr };

ZEFObject::~ZEFObject() = default;

void ZEFObject::retain() const noexcept
{
    if (_retainCount.load(std::memory_order_relaxed) != immortalCount)
        _retainCount.fetch_add(1, std::memory_order_relaxed);
}

void ZEFObject::release() const noexcept
{
    if (_retainCount.load(std::memory_order_relaxed) == immortalCount)
        return;
    if (_retainCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        const_cast<ZEFObject*>(this)->dealloc();
}

bool ZEFObject::retainIfAlive() const noexcept
{
    auto count = _retainCount.load(std::memory_order_relaxed);
    while (count && count != immortalCount) {
        if (_retainCount.compare_exchange_weak(count, count + 1, std::memory_order_relaxed))
            return true;
    }
    return count;
}

std::uint32_t ZEFObject::retainCount() const noexcept
{
    return _retainCount.load(std::memory_order_relaxed);
}

const zef::Class& ZEFObject::objectClass() const
{
    return classObject;
}

bool ZEFObject::isKindOfClass(const zef::Class& other) const
{
    return objectClass().isSubclassOf(other);
}

bool ZEFObject::isEqual(const ZEFObject* other) const
{
    return this == other;
}

std::size_t ZEFObject::hash() const
{
    return std::hash<const void*>{}(this);
}

std::string ZEFObject::description() const
{
    char address[2 + 2 * sizeof(void*) + 1];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
    return std::string("<") + objectClass().name + ": " + address + ">";
}

zef::Ref<ZEFObject> ZEFObject::copy()
{
    return nullptr;
}

void ZEFObject::dealloc() noexcept
{
    delete this;
}

void ZEFObject::makeImmortal() noexcept
{
    _retainCount.store(immortalCount, std::memory_order_relaxed);
}

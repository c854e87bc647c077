// SPDX-License-Identifier: MIT
#include "tests/support/FakeLocator.h"

void FakeLocator::setAnswer(zef::FileURL answer)
{
    std::lock_guard lock(_mutex);
    _answer = std::move(answer);
}

void FakeLocator::setPlace(const zef::FSRef& ref, zef::FileURL place)
{
    std::lock_guard lock(_mutex);
    auto& object = _objects[zef::ObjectNumbers::of(ref)];
    object.hasPlace = true;
    object.place = std::move(place);
}

int FakeLocator::uses(const zef::FSRef& ref) const
{
    std::lock_guard lock(_mutex);
    const auto found = _objects.find(zef::ObjectNumbers::of(ref));
    return found == _objects.end() ? 0 : found->second.uses;
}

bool FakeLocator::makeRef(const zef::FileURL& url, const zef::Stat& stat, zef::FSRef& ref)
{
    if (_refusesReferences || !url)
        return false;
    ref = zef::FSRef(stat);
    return true;
}

void FakeLocator::retain(zef::FSRef& ref, const zef::FileURL&)
{
    if (ref.isEmpty())
        return;
    if (const auto hook = _beforeRetain) // which may set another one
        hook();
    ++_retainCount;
    std::lock_guard lock(_mutex);
    ++_objects[zef::ObjectNumbers::of(ref)].uses;
}

void FakeLocator::release(const zef::FSRef& ref)
{
    if (ref.isEmpty())
        return;
    ++_releaseCount;
    std::lock_guard lock(_mutex);
    --_objects[zef::ObjectNumbers::of(ref)].uses;
}

zef::FileURL FakeLocator::locate(const zef::FSRef& ref, const zef::FileURL&)
{
    ++_locateCount;
    if (ref.isEmpty())
        return nullptr;
    std::lock_guard lock(_mutex);
    const auto found = _objects.find(zef::ObjectNumbers::of(ref));
    const bool hasPlace = found != _objects.end() && found->second.hasPlace;
    const auto& place = hasPlace ? found->second.place : _answer;
    if (!place)
        return nullptr;
    return place.withKind(ref.isFolder() ? zef::URLKind::folder : zef::URLKind::file);
}

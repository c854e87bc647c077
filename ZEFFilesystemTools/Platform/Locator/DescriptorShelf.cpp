// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/DescriptorShelf.h"

namespace zef {

DescriptorShelf::Iterator DescriptorShelf::add(HeldObject object)
{
    return _objects.insert(_objects.begin(), std::move(object));
}

void DescriptorShelf::markUsed(Iterator object)
{
    // Its place in the turn is not worth following.
    if (_turn == object)
        ++_turn;
    _objects.splice(_objects.begin(), _objects, object);
}

HeldObject DescriptorShelf::take(Iterator object)
{
    if (_turn == object)
        ++_turn;
    auto taken = std::move(*object);
    _objects.erase(object);
    return taken;
}

DescriptorShelf::Iterator DescriptorShelf::nextInTurn()
{
    if (_turn == _objects.end())
        _turn = _objects.begin();
    return _turn == _objects.end() ? _turn : _turn++;
}

} // namespace zef

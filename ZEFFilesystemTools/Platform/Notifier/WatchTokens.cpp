// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/WatchTokens.h"

#include <utility>

// Tokens are slots of one array, and numbers are an index with the slot's generation above it. The
// tokens of one watch form a list through the slots, and so do the free slots, which are used again
// in the order in which they were freed.

namespace zef {
namespace {

// A number is an index and, above it, a generation; together they stay positive.
constexpr int indexBits = 24;
constexpr std::uint32_t indexMask = (1u << indexBits) - 1;
constexpr std::uint8_t generationMask = 0x7f;

// The oldest free slot is used again only when that many others are free.
constexpr std::size_t leastFreeSlots = 1024;

} // namespace

WatchTokens::WatchTokens()
    : _slots(1)
{
}

int WatchTokens::add()
{
    const auto index = takeSlot();
    if (!index)
        return 0;
    auto& token = _slots[index];
    token.means = WatchToken::Means::stamps;
    return static_cast<int>(index | static_cast<std::uint32_t>(token.generation) << indexBits);
}

WatchToken* WatchTokens::find(int number)
{
    const auto bits = static_cast<std::uint32_t>(number);
    const auto index = bits & indexMask;
    if (index >= _slots.size() || _slots[index].generation != bits >> indexBits)
        return nullptr;
    return _slots[index].means == WatchToken::Means::none ? nullptr : &_slots[index];
}

int WatchTokens::remove(int number)
{
    auto* token = find(number);
    if (!token)
        return -1;
    const int unused = leaveWatch(*token);
    giveSlotBack(indexOf(*token));
    return unused;
}

int WatchTokens::setWatch(WatchToken& token, int watch)
{
    if (token.watch == watch)
        return -1;
    const int unused = leaveWatch(token);
    const auto index = indexOf(token);
    auto& first = _firstTokens[watch];
    token.watch = watch;
    token.next = std::exchange(first, index);
    if (token.next)
        _slots[token.next].previous = index;
    token.means = WatchToken::Means::unverifiedWatch;
    token.stamps.reset();
    return unused;
}

int WatchTokens::setStamps(WatchToken& token, const FileStamps& stamps, StampClock clock)
{
    const int unused = leaveWatch(token);
    token.means = WatchToken::Means::stamps;
    token.stamps = std::make_unique<FileStamps>(stamps);
    token.stampClock = clock;
    return unused;
}

void WatchTokens::mark(int watch)
{
    const auto found = _firstTokens.find(watch);
    if (found == _firstTokens.end())
        return;
    for (auto index = found->second; index; index = _slots[index].next)
        _slots[index].isMarked = true;
}

void WatchTokens::endWatch(int watch)
{
    mark(watch);
    for (auto found = _firstTokens.find(watch); found != _firstTokens.end();
         found = _firstTokens.find(watch))
        setStamps(_slots[found->second], {}, StampClock::ours);
}

void WatchTokens::doubtEveryWatch()
{
    for (auto& token : _slots) {
        if (token.watch < 0)
            continue;
        token.isMarked = true;
        token.means = WatchToken::Means::unverifiedWatch;
    }
}

std::uint32_t WatchTokens::indexOf(const WatchToken& token) const
{
    return static_cast<std::uint32_t>(&token - _slots.data());
}

std::uint32_t WatchTokens::takeSlot()
{
    if (_freeCount > leastFreeSlots) {
        --_freeCount;
        const auto index = _firstFree;
        _firstFree = std::exchange(_slots[index].next, 0);
        return index;
    }
    if (_slots.size() > indexMask)
        return 0;
    _slots.emplace_back();
    return static_cast<std::uint32_t>(_slots.size() - 1);
}

void WatchTokens::giveSlotBack(std::uint32_t index)
{
    auto& slot = _slots[index];
    const auto generation = static_cast<std::uint8_t>((slot.generation + 1) & generationMask);
    slot = {};
    slot.generation = generation;
    auto& end = _freeCount ? _slots[_lastFree].next : _firstFree;
    end = index;
    _lastFree = index;
    ++_freeCount;
}

int WatchTokens::leaveWatch(WatchToken& token)
{
    if (token.watch < 0)
        return -1;
    if (token.next)
        _slots[token.next].previous = token.previous;
    if (token.previous)
        _slots[token.previous].next = token.next;
    const int watch = std::exchange(token.watch, -1);
    const auto next = std::exchange(token.next, 0);
    if (std::exchange(token.previous, 0))
        return -1;
    const auto found = _firstTokens.find(watch);
    if (next) {
        found->second = next;
        return -1;
    }
    _firstTokens.erase(found);
    return watch;
}

} // namespace zef

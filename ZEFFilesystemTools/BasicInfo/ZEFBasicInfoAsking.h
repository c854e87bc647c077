// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoDetails.h"
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include <mutex>
#include <utility>

/// One question to a basic info item: gives what it knows already, or computes the answer with
/// nothing locked and lets the item keep it, unless an event has dropped answers meanwhile.
class ZEF_INTERNAL ZEFBasicInfoFileItem::Asking {
public:
    explicit Asking(ZEFBasicInfoFileItem& item)
        : _item(item)
    {
    }

    /// A yes or no. `make` computes it.
    template <typename Make> bool decide(ZEFTriState ZEFBasicInfoFileItem::*state, Make&& make)
    {
        {
            std::lock_guard lock(_item._answersLock);
            if ((_item.*state).isKnown())
                return (_item.*state).isYes();
            _generation = _item._generation;
        }
        const bool yes = std::forward<Make>(make)();
        keep([&] { (_item.*state).set(yes); });
        return yes;
    }

    /// A value among the details. `make` computes it, or yields nothing, which isn't kept.
    template <typename Value, typename Make>
    std::optional<Value> know(std::optional<Value> ZEFBasicInfoDetails::*detail, Make&& make)
    {
        {
            std::lock_guard lock(_item._answersLock);
            if (_item._details && (*_item._details).*detail)
                return (*_item._details).*detail;
            _generation = _item._generation;
        }
        std::optional<Value> made = std::forward<Make>(make)();
        if (made)
            keep([&] { details().*detail = made; });
        return made;
    }

    /// Looks at what is known; `look` says whether that is enough.
    template <typename Look> bool find(Look&& look)
    {
        std::lock_guard lock(_item._answersLock);
        _generation = _item._generation;
        return std::forward<Look>(look)();
    }

    /// Lets `store` keep what was computed since the question.
    template <typename Store> void keep(Store&& store)
    {
        std::lock_guard lock(_item._answersLock);
        if (_item._generation == _generation)
            std::forward<Store>(store)();
    }

    /// Only within `find` and `keep`.
    ZEFBasicInfoDetails& details()
    {
        if (!_item._details)
            _item._details = std::make_unique<ZEFBasicInfoDetails>();
        return *_item._details;
    }

private:
    ZEFBasicInfoFileItem& _item;
    std::uint16_t _generation = 0;
};

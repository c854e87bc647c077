// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/NumberedItem.h"

namespace tool {

/// An item of the library's class `Item` as the program uses it. To the library and to its users
/// it is an `Item`, by name too.
template <typename Item> class NumberedFileItem final : public Item, public NumberedItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    NumberedFileItem(const zef::FileURL& url, const zef::FSRef* fsRef, const zef::FileURL& pathRep,
        const zef::Stat* statInfo)
        : Item(url, fsRef, pathRep, statInfo)
        , NumberedItem(static_cast<ZEFFileItem&>(*this))
    {
    }

    void updateForEvent(const ZEFChangeRecord* record) override
    {
        noteEvent(record);
        Item::updateForEvent(record);
    }

private:
    ~NumberedFileItem() override = default;
};

template <typename Item>
const ZEFFileItemClass NumberedFileItem<Item>::classObject(Item::classObject.name,
    &Item::classObject, ZEFFileItemClass::initializer<NumberedFileItem<Item>>);

} // namespace tool

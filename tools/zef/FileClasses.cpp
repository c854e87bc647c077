// SPDX-License-Identifier: MIT
#include "tools/zef/FileClasses.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "tools/zef/NumberedItem.h"

namespace tool {
namespace {

// An item of the library's class `Item` with a number. To the library and to its users it is an
// `Item`, by name too.
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

} // namespace

const ZEFFileItemClass& FileClasses::plain()
{
    return NumberedFileItem<ZEFFileItem>::classObject;
}

const ZEFFileItemClass& FileClasses::basicInfo()
{
    return NumberedFileItem<ZEFBasicInfoFileItem>::classObject;
}

const ZEFFileItemClass& FileClasses::printed(bool isPlain, bool asJSON)
{
    if (asJSON)
        return chosen(isPlain);
    return isPlain ? ZEFFileItem::classObject : ZEFBasicInfoFileItem::classObject;
}

const ZEFFileItemClass* FileClasses::named(std::string_view name)
{
    for (const auto* fileClass : { &plain(), &basicInfo() }) {
        if (fileClass->name == name)
            return fileClass;
    }
    return nullptr;
}

} // namespace tool

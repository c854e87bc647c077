// SPDX-License-Identifier: MIT
#include "tools/zef/FileClasses.h"

#include "tools/zef/NumberedFileItem.h"

namespace tool {

const ZEFFileItemClass& FileClasses::plain()
{
    return NumberedFileItem<ZEFFileItem>::classObject;
}

const ZEFFileItemClass& FileClasses::basicInfo()
{
    return NumberedFileItem<ZEFBasicInfoFileItem>::classObject;
}

const ZEFFileItemClass* FileClasses::named(std::string_view name)
{
    for (const auto* fileClass : { &plain(), &basicInfo() }) {
        if (fileClass->name == name)
            return fileClass;
    }
    return nullptr;
}

ZEFBasicInfoFileItem* FileClasses::basicInfoItem(ZEFFileItem& item)
{
    return zef::downcast<ZEFBasicInfoFileItem>(&item);
}

} // namespace tool

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFNormalDirectoryFilter.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

const zef::Class ZEFNormalDirectoryFilter::classObject{ "ZEFNormalDirectoryFilter",
    &ZEFDirectoryFilter::classObject };

zef::Ref<ZEFNormalDirectoryFilter> ZEFNormalDirectoryFilter::filter()
{
    return zef::makeRef<ZEFNormalDirectoryFilter>();
}

// In this order: finding out what is invisible costs much, and most items are no folders.
bool ZEFNormalDirectoryFilter::shouldIncludeFile(ZEFFileItem* file) const
{
    auto* basicInfo = zef::downcast<ZEFBasicInfoFileItem>(file);
    return basicInfo && basicInfo->isDirectory() && !basicInfo->isInvisible();
}

zef::Ref<ZEFFileItem> ZEFNormalDirectoryFilter::trueDirectoryObjectForFile(ZEFFileItem* file) const
{
    auto* basicInfo = zef::downcast<ZEFBasicInfoFileItem>(file);
    return basicInfo ? basicInfo->resolvedFile() : nullptr;
}

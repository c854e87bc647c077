// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFilters.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

const zef::Class ZEFFileFilter::classObject{ "ZEFFileFilter", &ZEFObject::classObject };
const zef::Class ZEFVisibleFileFilter::classObject{ "ZEFVisibleFileFilter",
    &ZEFFileFilter::classObject };
const zef::Class ZEFDirectoryFilter::classObject{ "ZEFDirectoryFilter",
    &ZEFFileFilter::classObject };
const zef::Class ZEFNormalDirectoryFilter::classObject{ "ZEFNormalDirectoryFilter",
    &ZEFDirectoryFilter::classObject };

zef::Ref<ZEFFileFilter> ZEFFileFilter::filter()
{
    return zef::makeRef<ZEFFileFilter>();
}

bool ZEFFileFilter::shouldIncludeFile(ZEFFileItem*) const
{
    return true;
}

zef::Ref<ZEFVisibleFileFilter> ZEFVisibleFileFilter::filter()
{
    return zef::makeRef<ZEFVisibleFileFilter>();
}

bool ZEFVisibleFileFilter::shouldIncludeFile(ZEFFileItem* file) const
{
    auto* basicInfo = zef::downcast<ZEFBasicInfoFileItem>(file);
    return !basicInfo || !basicInfo->isInvisible();
}

zef::Ref<ZEFDirectoryFilter> ZEFDirectoryFilter::filter()
{
    return zef::makeRef<ZEFDirectoryFilter>();
}

bool ZEFDirectoryFilter::shouldIncludeFile(ZEFFileItem* file) const
{
    return file && file->isBasicDirectory();
}

zef::Ref<ZEFFileItem> ZEFDirectoryFilter::trueDirectoryObjectForFile(ZEFFileItem* file) const
{
    return file;
}

zef::Ref<ZEFNormalDirectoryFilter> ZEFNormalDirectoryFilter::filter()
{
    return zef::makeRef<ZEFNormalDirectoryFilter>();
}

// In this order: finding out what is invisible costs much, and most items are not folders.
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

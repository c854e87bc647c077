// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFVisibleFileFilter.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

const zef::Class ZEFVisibleFileFilter::classObject{ "ZEFVisibleFileFilter",
    &ZEFFileFilter::classObject };

zef::Ref<ZEFVisibleFileFilter> ZEFVisibleFileFilter::filter()
{
    return zef::makeRef<ZEFVisibleFileFilter>();
}

bool ZEFVisibleFileFilter::shouldIncludeFile(ZEFFileItem* file) const
{
    auto* basicInfo = zef::downcast<ZEFBasicInfoFileItem>(file);
    return !basicInfo || !basicInfo->isInvisible();
}

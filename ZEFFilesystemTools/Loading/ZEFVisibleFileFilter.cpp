// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFVisibleFileFilter.h"

#include "ZEFFilesystemTools/Loading/ZEFAsBasicInfo.h"

const zef::Class ZEFVisibleFileFilter::classObject{ "ZEFVisibleFileFilter",
    &ZEFFileFilter::classObject };

zef::Ref<ZEFVisibleFileFilter> ZEFVisibleFileFilter::filter()
{
    return zef::makeRef<ZEFVisibleFileFilter>();
}

bool ZEFVisibleFileFilter::shouldIncludeFile(ZEFFileItem* file) const
{
    auto* basicInfo = ZEFAsBasicInfo(file);
    return !basicInfo || !basicInfo->isInvisible();
}

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

/// `file` as one that knows what a file browser shows; null for nil and for items of other classes.
inline ZEFBasicInfoFileItem* ZEFAsBasicInfo(ZEFFileItem* file)
{
    const bool isBasicInfo = file && file->isKindOfClass(ZEFBasicInfoFileItem::classObject);
    return isBasicInfo ? static_cast<ZEFBasicInfoFileItem*>(file) : nullptr;
}

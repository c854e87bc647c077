// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileFilter.h"

const zef::Class ZEFFileFilter::classObject{ "ZEFFileFilter", &ZEFObject::classObject };

zef::Ref<ZEFFileFilter> ZEFFileFilter::filter()
{
    return zef::makeRef<ZEFFileFilter>();
}

bool ZEFFileFilter::shouldIncludeFile(ZEFFileItem*) const
{
    return true;
}

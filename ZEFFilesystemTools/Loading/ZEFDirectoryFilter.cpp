// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFDirectoryFilter.h"

const zef::Class ZEFDirectoryFilter::classObject{ "ZEFDirectoryFilter",
    &ZEFFileFilter::classObject };

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

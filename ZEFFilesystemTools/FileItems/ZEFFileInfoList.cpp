// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileInfoList.h"

#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

bool ZEFFileInfoList::hasTimeStampsOf(const zef::Stat& stat) const
{
    return zef::secondsOfTimeStamp(stat.modificationTime) == modificationTime
        && zef::secondsOfTimeStamp(stat.statusChangeTime) == statusChangeTime;
}

void ZEFFileInfoList::setTimeStamps(const zef::Stat& stat)
{
    modificationTime = zef::secondsOfTimeStamp(stat.modificationTime);
    statusChangeTime = zef::secondsOfTimeStamp(stat.statusChangeTime);
}

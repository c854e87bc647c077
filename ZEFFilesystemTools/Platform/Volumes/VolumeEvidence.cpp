// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/VolumeEvidence.h"

namespace zef {

bool VolumeEvidence::matches(const VolumeEvidence& other) const
{
    constexpr UUID unknown{};
    if (type != other.type)
        return false;
    if (uuid != unknown && other.uuid != unknown)
        return uuid == other.uuid;
    if (fileSystemID && other.fileSystemID)
        return fileSystemID == other.fileSystemID;
    return mountPoint == other.mountPoint;
}

} // namespace zef

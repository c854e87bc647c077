// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentity.h"

namespace zef {

bool VolumeIdentity::matches(const VolumeIdentity& other) const
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

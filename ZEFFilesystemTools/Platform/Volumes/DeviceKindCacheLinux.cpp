// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/DeviceKindCache.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"

#include <fcntl.h>

namespace zef {
namespace {

// By a descriptor: statfs(2) would follow a link, and to another device perhaps.
DeviceKind kindOfOpened(int object, std::uint32_t device)
{
    Stat stat;
    if (object < 0 || statAt(object, "", stat) != 0 || stat.device != device)
        return DeviceKind::unknown;
    const auto type = fileSystemType(object);
    if (type == 0)
        return DeviceKind::unknown;
    if (isTypeOfRemoteFiles(type))
        return DeviceKind::remote;
    return isTypeOfMadeUpFiles(type) ? DeviceKind::madeUp : DeviceKind::local;
}

DeviceKind lookAt(const char* path, std::uint32_t device)
{
    auto& reserve = DescriptorReserve::shared();
    const int object = reserve.openAt(AT_FDCWD, path, O_PATH | O_NOFOLLOW);
    const auto kind = kindOfOpened(object, device);
    reserve.close(object);
    return kind;
}

} // namespace

DeviceKind DeviceKindCache::kind(std::uint32_t device, const char* path)
{
    const auto now = Clock::shared().monotonicSeconds();
    if (const auto known = _kinds.find(device, now))
        return *known;
    const auto kind = lookAt(path, device);
    if (kind != DeviceKind::unknown)
        _kinds.insert(device, kind, now);
    return kind;
}

} // namespace zef

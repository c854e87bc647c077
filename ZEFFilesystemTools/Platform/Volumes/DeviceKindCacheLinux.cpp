// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/DeviceKindCache.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"

#include <fcntl.h>

namespace zef {
namespace {

constexpr double secondsToTrustADevice = 1;

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
    {
        std::lock_guard lock(_mutex);
        const auto known = _known.find(device);
        if (known != _known.end() && now < known->second.validUntil)
            return known->second.kind;
    }
    const auto kind = lookAt(path, device);
    if (kind == DeviceKind::unknown)
        return kind;
    std::lock_guard lock(_mutex);
    _known.insert_or_assign(device, Known{ kind, now + secondsToTrustADevice });
    return kind;
}

void DeviceKindCache::forget()
{
    std::lock_guard lock(_mutex);
    _known.clear();
}

} // namespace zef

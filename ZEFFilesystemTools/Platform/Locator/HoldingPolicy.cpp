// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/HoldingPolicy.h"

#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <algorithm>

namespace zef {
namespace {

bool isRemovable(const Mount& mount)
{
    // Disks of other systems that a user plugs in come as "fuseblk"; other kinds of FUSE don't.
    return mount.type == "fuseblk" || mount.isBelow("/media") || mount.isBelow("/run/media")
        || mount.isBelow("/mnt");
}

bool isOnRemovableVolume(
    const ObjectDescriptor& object, std::uint32_t device, std::uint64_t mountID)
{
    if (isTypeOfRemovableMedia(fileSystemType(object.descriptor())))
        return true;
    const auto mounts = readMounts();
    return std::any_of(mounts.begin(), mounts.end(), [&](const auto& mount) {
        return (mountID ? mount.id == mountID : mount.device == device) && isRemovable(mount);
    });
}

} // namespace

void HoldingPolicy::setPolicy(DescriptorPolicy policy)
{
    _policy = policy;
    _verdicts.forgetAll();
    _barredDevices.forgetAll();
    _barredMounts.forgetAll();
}

bool HoldingPolicy::mayHold(
    const ObjectDescriptor& object, std::uint32_t device, std::uint64_t mountID)
{
    const auto policy = _policy.load();
    const auto now = Clock::shared().monotonicSeconds();
    if (policy == DescriptorPolicy::never || isBarred(device, mountID, now))
        return false;
    if (policy == DescriptorPolicy::always)
        return true;
    if (const auto known = _verdicts.find({ device, mountID }, now))
        return *known;
    const bool mayHold = !isOnRemovableVolume(object, device, mountID);
    const auto found = Clock::shared().monotonicSeconds();
    _verdicts.insert({ device, mountID }, mayHold, found);
    // A bar that was set meanwhile comes first.
    return mayHold && !isBarred(device, mountID, found);
}

void HoldingPolicy::bar(std::uint32_t device, std::uint64_t mountID)
{
    const auto now = Clock::shared().monotonicSeconds();
    _barredDevices.insert(device, true, now);
    if (mountID)
        _barredMounts.insert(mountID, true, now);
}

bool HoldingPolicy::isBarred(std::uint32_t device, std::uint64_t mountID, double now) const
{
    return _barredDevices.find(device, now).value_or(false)
        || _barredMounts.find(mountID, now).value_or(false);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/HoldingPolicy.h"

#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <algorithm>

namespace zef {
namespace {

constexpr double secondsToTrustAMount = 1;
constexpr double secondsOfBar = 60;

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
    std::lock_guard lock(_mutex);
    _policy = policy;
    _verdicts.clear();
}

DescriptorPolicy HoldingPolicy::policy() const
{
    std::lock_guard lock(_mutex);
    return _policy;
}

bool HoldingPolicy::mayHold(
    const ObjectDescriptor& object, std::uint32_t device, std::uint64_t mountID)
{
    {
        std::lock_guard lock(_mutex);
        if (_policy == DescriptorPolicy::never)
            return false;
        if (const auto* verdict = find(device, mountID))
            return verdict->mayHold;
        if (_policy == DescriptorPolicy::always)
            return true;
    }
    const bool mayHold = !isOnRemovableVolume(object, device, mountID);
    std::lock_guard lock(_mutex);
    // A bar that was set meanwhile comes first.
    if (const auto* verdict = find(device, mountID))
        return verdict->mayHold;
    remember({ device, mountID, mayHold, false,
        Clock::shared().monotonicSeconds() + secondsToTrustAMount });
    return mayHold;
}

void HoldingPolicy::bar(std::uint32_t device, std::uint64_t mountID)
{
    std::lock_guard lock(_mutex);
    remember({ device, mountID, false, true, Clock::shared().monotonicSeconds() + secondsOfBar });
}

const HoldingPolicy::Verdict* HoldingPolicy::find(std::uint32_t device, std::uint64_t mountID) const
{
    const auto now = Clock::shared().monotonicSeconds();
    const Verdict* found = nullptr;
    for (const auto& verdict : _verdicts) {
        if (now >= verdict.validUntil)
            continue;
        const bool isOfDevice = verdict.device == device;
        const bool isOfMount = verdict.mountID == mountID;
        if (verdict.isBar && (isOfDevice || (isOfMount && mountID)))
            return &verdict;
        if (isOfDevice && isOfMount)
            found = &verdict;
    }
    return found;
}

void HoldingPolicy::remember(Verdict verdict)
{
    const auto now = Clock::shared().monotonicSeconds();
    std::erase_if(_verdicts, [&](const auto& each) { return now >= each.validUntil; });
    _verdicts.push_back(verdict);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentityCache.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <linux/btrfs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>

namespace zef {
namespace {

// FS_IOC_GETFSUUID of Linux 6.9, which older headers lack.
struct FileSystemUUID {
    std::uint8_t length;
    std::uint8_t uuid[16];
};
constexpr unsigned long getFileSystemUUID = _IOR(0x15, 0, FileSystemUUID);

VolumeIdentity::UUID askForUUID(int folder)
{
    VolumeIdentity::UUID uuid{};
    FileSystemUUID answer{};
    struct btrfs_ioctl_fs_info_args information;
    std::memset(&information, 0, sizeof information);
    if (::ioctl(folder, getFileSystemUUID, &answer) == 0 && answer.length == uuid.size())
        std::copy_n(answer.uuid, uuid.size(), uuid.begin());
    else if (fileSystemType(folder) == BTRFS_SUPER_MAGIC
        && ::ioctl(folder, BTRFS_IOC_FS_INFO, &information) == 0)
        std::copy_n(information.fsid, uuid.size(), uuid.begin());
    return uuid;
}

// Unknown also for a folder that may not be read.
VolumeIdentity::UUID uuidOfVolume(const char* mountPoint)
{
    auto& reserve = DescriptorReserve::shared();
    const int folder = reserve.openAt(AT_FDCWD, mountPoint, O_RDONLY | O_DIRECTORY);
    if (folder < 0)
        return {};
    const auto uuid = askForUUID(folder);
    reserve.close(folder);
    return uuid;
}

// The last one of those with the same number and place is the one that is seen.
std::string typeOfMount(const std::string& mountPoint, std::uint64_t mountID)
{
    const auto mounts = readMounts();
    const auto found = std::find_if(mounts.rbegin(), mounts.rend(), [&](const auto& mount) {
        return mount.folder == mountPoint && (!mountID || mount.id == mountID);
    });
    return found == mounts.rend() ? std::string() : found->type;
}

// xfs and squashfs return the device's number, which another start of the machine changes.
std::uint64_t usefulFileSystemID(const struct statfs& status, std::uint32_t device)
{
    std::uint32_t words[2];
    static_assert(sizeof words == sizeof status.f_fsid);
    std::memcpy(words, &status.f_fsid, sizeof words);
    return words[0] == device ? 0 : std::uint64_t{ words[1] } << 32 | words[0];
}

double now()
{
    return Clock::shared().monotonicSeconds();
}

} // namespace

std::optional<VolumeIdentity> VolumeIdentityCache::identity(
    const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID)
{
    const Place place{ device, mountID, mountPoint };
    if (auto known = _identities.find(place, now()))
        return known;
    auto type = typeOfMount(mountPoint, mountID);
    if (type.empty())
        return std::nullopt;
    const VolumeIdentity identity{ .type = std::move(type),
        .uuid = uuidOfVolume(mountPoint.c_str()),
        .fileSystemID = fileSystemID(mountPoint.c_str(), device),
        .mountPoint = mountPoint };
    _identities.insert(place, identity, now());
    return identity;
}

std::uint64_t VolumeIdentityCache::fileSystemID(const char* path, std::uint32_t device)
{
    return numbers(path, device).fileSystemID;
}

std::optional<std::uint64_t> VolumeIdentityCache::knownFileSystemID(std::uint32_t device) const
{
    const auto known = _numbers.find(device, now());
    return known ? std::optional(known->fileSystemID) : std::nullopt;
}

bool VolumeIdentityCache::hasLastingNumbers(const char* path, std::uint32_t device)
{
    return zef::hasLastingNumbers(numbers(path, device).type);
}

VolumeIdentityCache::Numbers VolumeIdentityCache::numbers(const char* path, std::uint32_t device)
{
    if (const auto known = _numbers.find(device, now()))
        return *known;
    struct statfs status;
    if (::statfs(path, &status) != 0)
        return {};
    const Numbers numbers{ static_cast<std::uint32_t>(status.f_type),
        usefulFileSystemID(status, device) };
    _numbers.insert(device, numbers, now());
    return numbers;
}

} // namespace zef

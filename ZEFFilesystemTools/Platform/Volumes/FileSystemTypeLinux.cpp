// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"

#include <algorithm>
#include <iterator>

#include <linux/magic.h>
#include <sys/vfs.h>

namespace zef {
namespace {

// Some of these are in no header of the system.
constexpr std::uint32_t exfatMagic = 0x2011bab0;
constexpr std::uint32_t ntfsMagic = 0x5346544e;
constexpr std::uint32_t ntfs3Magic = 0x7366746e;
constexpr std::uint32_t hfsMagic = 0x4244;
constexpr std::uint32_t hfsPlusMagic = 0x482b;
constexpr std::uint32_t udfMagic = 0x15013346;

constexpr std::uint32_t removableTypes[] = { MSDOS_SUPER_MAGIC, exfatMagic, ntfsMagic, ntfs3Magic,
    hfsMagic, hfsPlusMagic, ISOFS_SUPER_MAGIC, udfMagic };

constexpr std::uint32_t inventedNumberTypes[] = { MSDOS_SUPER_MAGIC, exfatMagic, FUSE_SUPER_MAGIC };

constexpr std::uint32_t lastingHandleTypes[] = { EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC,
    BTRFS_SUPER_MAGIC, TMPFS_MAGIC };

constexpr std::uint32_t remoteTypes[] = {
    AFS_SUPER_MAGIC, AFS_FS_MAGIC, CEPH_SUPER_MAGIC, CIFS_SUPER_MAGIC, CODA_SUPER_MAGIC,
    FUSE_SUPER_MAGIC, NCP_SUPER_MAGIC, NFS_SUPER_MAGIC, OCFS2_SUPER_MAGIC, SMB_SUPER_MAGIC,
    SMB2_SUPER_MAGIC, V9FS_MAGIC,
    0x01161970, // GFS2
    0x0bd00bd0, // Lustre
    0x19830326, // BeeGFS
    0x47504653, // GPFS
    0x786f4256, // VirtualBox's shared folders
    0x7c7c6673, // Parallels' shared folders
    0xbacbacbc, // VMware's shared folders
};

constexpr std::uint32_t madeUpTypes[] = { PROC_SUPER_MAGIC, SYSFS_MAGIC };

bool contains(const auto& types, std::uint32_t type)
{
    return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

} // namespace

std::uint32_t fileSystemType(int descriptor)
{
    struct statfs status;
    return ::fstatfs(descriptor, &status) == 0 ? static_cast<std::uint32_t>(status.f_type) : 0;
}

bool isTypeOfRemovableMedia(std::uint32_t type)
{
    return contains(removableTypes, type);
}

bool hasLastingNumbers(std::uint32_t type)
{
    return !contains(inventedNumberTypes, type);
}

bool keepsBirthTimes(std::uint32_t type)
{
    return type != OVERLAYFS_SUPER_MAGIC;
}

bool hasLastingHandles(std::uint32_t type)
{
    return contains(lastingHandleTypes, type);
}

bool isTypeOfRemoteFiles(std::uint32_t type)
{
    return contains(remoteTypes, type);
}

bool isTypeOfMadeUpFiles(std::uint32_t type)
{
    return contains(madeUpTypes, type);
}

} // namespace zef

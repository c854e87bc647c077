// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <cerrno>
#include <span>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace zef {
namespace {

constexpr unsigned longestHandle = 128; // MAX_HANDLE_SZ of every kernel so far
constexpr int identityOnly = 0x200; // AT_HANDLE_FID of Linux 6.5, not in glibc 2.36

// The system's record and, right behind it, room for the handle's bytes.
class HandleBuffer {
public:
    HandleBuffer() { header().handle_bytes = longestHandle; }

    struct file_handle& header() { return *reinterpret_cast<struct file_handle*>(_memory); }

    FileHandle handle(bool isDecodable)
    {
        const std::span bytes(_memory + sizeof(struct file_handle), header().handle_bytes);
        return FileHandle::of(
            static_cast<std::uint8_t>(header().handle_type), std::as_bytes(bytes), isDecodable);
    }

private:
    alignas(struct file_handle) unsigned char _memory[sizeof(struct file_handle) + longestHandle];
};

std::timespec timeStamp(const struct statx_timestamp& stamp)
{
    return { stamp.tv_sec, static_cast<long>(stamp.tv_nsec) };
}

void setBirthTime(const struct statx& source, Stat& stat)
{
    stat.hasBirthTime = source.stx_mask & STATX_BTIME;
    stat.birthTime = stat.hasBirthTime
        ? source.stx_btime.tv_sec * 1'000'000'000 + source.stx_btime.tv_nsec
        : 0;
}

} // namespace

int statAt(int folder, const char* name, Stat& stat)
{
    std::uint64_t mountID = 0;
    return statAt(folder, name, stat, mountID);
}

int statAt(int folder, const char* name, Stat& stat, std::uint64_t& mountID)
{
    struct statx result;
    if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_EMPTY_PATH,
            STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID, &result)
        != 0)
        return errno;
    mountID = result.stx_mask & STATX_MNT_ID ? result.stx_mnt_id : 0;
    stat.device = static_cast<std::uint32_t>(makedev(result.stx_dev_major, result.stx_dev_minor));
    stat.mode = result.stx_mode;
    stat.inode = result.stx_ino;
    stat.size = result.stx_size;
    stat.linkCount = result.stx_nlink;
    stat.modificationTime = timeStamp(result.stx_mtime);
    stat.statusChangeTime = timeStamp(result.stx_ctime);
    setBirthTime(result, stat);
    return 0;
}

FileHandle handleAt(int folder, const char* name)
{
    for (const int flags : { 0, identityOnly }) {
        HandleBuffer buffer;
        int mountID = 0;
        if (::name_to_handle_at(folder, name, &buffer.header(), &mountID, AT_EMPTY_PATH | flags)
            == 0)
            return buffer.handle(flags == 0);
        if (errno != EOPNOTSUPP)
            break;
    }
    return {};
}

} // namespace zef

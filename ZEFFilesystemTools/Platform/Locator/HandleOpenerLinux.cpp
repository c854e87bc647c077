// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/HandleOpener.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Volumes/FileSystemType.h"
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

// The kernel opens a handle only relative to an open folder of its mount, so the first step is to
// find one: the deepest folder above the place where the object was last seen that is still on the
// object's device, or else the point where the device is mounted. Then the handle is opened, and
// what it leads to is compared with the reference, because another object may have taken the number
// or the handle may be of another volume that has the same device number now. Only ESTALE on a file
// system whose handles last, or an object without names, proves that the object is gone; everything
// else leaves the question to other ways of searching.

namespace zef {
namespace {

// The system's record with the bytes of a handle right behind it.
class SystemHandle {
public:
    explicit SystemHandle(const FileHandle& handle)
    {
        record()->handle_bytes = handle.length;
        record()->handle_type = handle.type;
        std::memcpy(_memory + sizeof(struct file_handle), handle.bytes.data(), handle.length);
    }

    struct file_handle* record() { return reinterpret_cast<struct file_handle*>(_memory); }

private:
    alignas(struct file_handle) unsigned char _memory[sizeof(struct file_handle)
        + sizeof FileHandle::bytes];
};

bool isOnDevice(const char* path, std::uint32_t device)
{
    Stat stat;
    return statAt(AT_FDCWD, path, stat) == 0 && stat.isFolder() && stat.device == device;
}

// The system needs the mount as a folder that is open for reading, not as an O_PATH descriptor.
int openFolder(const char* path)
{
    return DescriptorReserve::shared().openAt(AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
}

// -1 when no folder above `url` is on the device.
int openFolderAbove(FileURL url, std::uint32_t device)
{
    while (url) {
        auto folder = url.deletingLastPathComponent();
        PathBytes path;
        // With a slash at the end, so that a link to a folder is followed.
        if (folder.fileSystemRepresentation(path) && path.append("/")
            && isOnDevice(path.text(), device))
            return openFolder(path.text());
        if (folder == url)
            break;
        url = std::move(folder);
    }
    return -1;
}

// Touches only mounts that the table has on the device: others may belong to a server that is down.
// On btrfs, where files have devices of their own, all are.
int openMountOf(std::uint32_t device)
{
    for (const auto& mount : readMounts()) {
        if ((mount.device == device || mount.type == "btrfs")
            && isOnDevice(mount.folder.c_str(), device))
            return openFolder(mount.folder.c_str());
    }
    return -1;
}

// Whether this thread has what open_by_handle_at(2) asks for; it may have given that up for a while
// (capabilities(7)).
bool hasCapability()
{
    __user_cap_header_struct header{ _LINUX_CAPABILITY_VERSION_3, 0 };
    std::array<__user_cap_data_struct, 2> sets{};
    return ::syscall(SYS_capget, &header, sets.data()) == 0
        && (sets[0].effective & (1U << CAP_DAC_READ_SEARCH)) != 0;
}

bool canBeOpened(const FileHandle& handle)
{
    return handle.isKnown() && handle.isDecodable && handle.length <= handle.bytes.size();
}

} // namespace

bool HandleOpener::mayOpen() const
{
    switch (_refusal.load(std::memory_order_relaxed)) {
    case Refusal::none:
        return true;
    case Refusal::withoutCapability:
        return hasCapability();
    case Refusal::forGood:
        break;
    }
    return false;
}

HandleOpener::Result HandleOpener::open(const FSRef& ref, const FileURL& near)
{
    if (!mayOpen() || !canBeOpened(ref.handle()))
        return { Outcome::unknown };
    int mount = openFolderAbove(near, ref.device());
    if (mount < 0)
        mount = openMountOf(ref.device());
    if (mount < 0)
        return { Outcome::unknown };
    auto result = openOnMount(ref, mount);
    DescriptorReserve::shared().close(mount);
    return result;
}

HandleOpener::Result HandleOpener::openOnMount(const FSRef& ref, int mount)
{
    const auto type = fileSystemType(mount);
    if (!hasLastingNumbers(type))
        return { Outcome::unknown };
    SystemHandle handle(ref.handle());
    const int descriptor = ::open_by_handle_at(
        mount, handle.record(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) {
        const int error = errno;
        if (error == EPERM || error == ENOSYS) {
            const bool isForGood = error == ENOSYS || hasCapability();
            _refusal = isForGood ? Refusal::forGood : Refusal::withoutCapability;
        }
        const bool isGone = error == ESTALE && hasLastingHandles(type);
        return { isGone ? Outcome::gone : Outcome::unknown };
    }
    auto object = makeRef<ObjectDescriptor>(descriptor);
    Stat stat;
    if (object->stat(stat) != 0 || !object->isObject(ref, stat))
        return { Outcome::unknown };
    if (stat.linkCount == 0)
        return { Outcome::gone };
    return { Outcome::opened, std::move(object) };
}

} // namespace zef

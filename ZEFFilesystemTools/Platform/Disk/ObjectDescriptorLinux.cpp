// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"

#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <charconv>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zef {
namespace {

constexpr std::string_view descriptorFolder = "/proc/self/fd/";

// The path of the kernel's link to what a descriptor is open on.
class DescriptorLink {
public:
    explicit DescriptorLink(int descriptor)
    {
        auto* digits = _path + descriptorFolder.copy(_path, descriptorFolder.size());
        *std::to_chars(digits, std::end(_path) - 1, descriptor).ptr = '\0';
    }

    const char* path() const { return _path; }

private:
    char _path[descriptorFolder.size() + 12];
};

} // namespace

Ref<ObjectDescriptor> ObjectDescriptor::open(const char* path)
{
    const int descriptor = ::open(path, O_PATH | O_NOFOLLOW | O_CLOEXEC);
    return descriptor < 0 ? nullptr : makeRef<ObjectDescriptor>(descriptor);
}

ObjectDescriptor::~ObjectDescriptor()
{
    ::close(_descriptor);
}

int ObjectDescriptor::stat(Stat& stat) const
{
    return statAt(_descriptor, "", stat);
}

int ObjectDescriptor::stat(Stat& stat, std::uint64_t& mountID) const
{
    return statAt(_descriptor, "", stat, mountID);
}

FileHandle ObjectDescriptor::handle() const
{
    return handleAt(_descriptor, "");
}

bool ObjectDescriptor::isObject(const FSRef& ref, const Stat& stat) const
{
    if (!ref.hasNumbersOf(stat))
        return false;
    if (!stat.hasBirthTime || !ref.hasBirthTime() || stat.birthTime == ref.birthTime())
        return true;
    return ref.hasHandle() && handle() == ref.handle();
}

bool ObjectDescriptor::isNameless() const
{
    struct statx result;
    return ::statx(_descriptor, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_NLINK, &result) == 0
        && result.stx_mask & STATX_NLINK && result.stx_nlink == 0;
}

bool ObjectDescriptor::currentPath(PathBytes& path) const
{
    char bytes[PATH_MAX];
    const auto length = ::readlink(DescriptorLink(_descriptor).path(), bytes, sizeof bytes);
    path.clear();
    // Outside of the process's root the text begins with "(unreachable)".
    return length > 0 && bytes[0] == '/'
        && path.append({ bytes, static_cast<std::size_t>(length) });
}

} // namespace zef

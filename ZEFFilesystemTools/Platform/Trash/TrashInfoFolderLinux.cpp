// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashInfoFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashName.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace zef {
namespace {

// With more records than this it takes less time to write out the whole volume once: every fsync(2)
// waits for the disk.
constexpr std::size_t mostFilesOneByOne = 4;

std::string fileOf(const std::string& name)
{
    return name + std::string(TrashName::infoSuffix);
}

int writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const auto count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR)
            return errno;
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return 0;
}

} // namespace

TrashInfoFolder::TrashInfoFolder(Ref<ObjectDescriptor> folder)
    : _folder(std::move(folder))
{
}

int TrashInfoFolder::write(const std::string& name, std::string_view text)
{
    auto file = fileOf(name);
    if (const int error = writeNew(file, text))
        return error;
    _unsafeFiles.push_back(std::move(file));
    return 0;
}

int TrashInfoFolder::writeNew(const std::string& file, std::string_view text)
{
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const int descriptor = ::openat(_folder->descriptor(), file.c_str(), flags, 0600);
    if (descriptor < 0)
        return errno;
    int error = writeAll(descriptor, text);
    // Some file systems tell only now that there is no room.
    if (::close(descriptor) != 0 && !error)
        error = errno;
    if (error)
        ::unlinkat(_folder->descriptor(), file.c_str(), 0);
    return error;
}

int TrashInfoFolder::synchronise()
{
    const auto files = std::exchange(_unsafeFiles, {});
    if (files.size() > mostFilesOneByOne)
        return ::syncfs(_folder->descriptor()) == 0 ? 0 : errno;
    for (const auto& file : files) {
        if (const int error = synchroniseFile(file))
            return error;
    }
    return 0;
}

int TrashInfoFolder::synchroniseFile(const std::string& file)
{
    auto& reserve = DescriptorReserve::shared();
    const int descriptor = reserve.openAt(
        _folder->descriptor(), file.c_str(), O_RDONLY | O_NOFOLLOW);
    if (descriptor < 0)
        return errno;
    const int error = ::fsync(descriptor) == 0 ? 0 : errno;
    reserve.close(descriptor);
    return error;
}

void TrashInfoFolder::remove(const std::string& name)
{
    ::unlinkat(_folder->descriptor(), fileOf(name).c_str(), 0);
}

} // namespace zef

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashInfoFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Text/PercentEncoding.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashName.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace zef {
namespace {

// With more records than this it takes less time to write out the whole volume once: every fsync(2)
// waits for the disk.
constexpr std::size_t mostFilesOneByOne = 4;

std::string localTime(Date date)
{
    const auto seconds = static_cast<std::time_t>(std::floor(date.secondsSince1970()));
    std::tm parts{};
    std::array<char, 32> text{};
    if (!::localtime_r(&seconds, &parts))
        return {};
    return { text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts) };
}

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

std::string trashInfoText(std::string_view path, Date date)
{
    std::string text = "[Trash Info]\nPath=";
    appendPercentEncoded(text, path, [](char byte) { return byte == '/' || isUnreserved(byte); });
    return text.append("\nDeletionDate=").append(localTime(date)).append("\n");
}

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
    // Some file systems report only now that there is no room.
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

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Volumes/MountTable.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"

#include <cerrno>
#include <charconv>
#include <optional>

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace zef {
namespace {

// Takes the first word off `line`.
std::string_view takeWord(std::string_view& line)
{
    const auto end = std::min(line.find(' '), line.size());
    const auto word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return word;
}

template <typename Number> bool parseNumber(std::string_view text, Number& number, int base = 10)
{
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, base);
    return result.ec == std::errc() && result.ptr == end;
}

bool parseDevice(std::string_view text, std::uint32_t& device)
{
    const auto colon = text.find(':');
    unsigned major = 0;
    unsigned minor = 0;
    if (colon == text.npos || !parseNumber(text.substr(0, colon), major)
        || !parseNumber(text.substr(colon + 1), minor))
        return false;
    device = static_cast<std::uint32_t>(makedev(major, minor));
    return true;
}

// Blanks, line ends and backslashes are written as a backslash and three octal digits.
std::string unescaped(std::string_view text)
{
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        unsigned char code = 0;
        if (text[index] == '\\' && index + 3 < text.size()
            && parseNumber(text.substr(index + 1, 3), code, 8)) {
            result += static_cast<char>(code);
            index += 3;
        } else
            result += text[index];
    }
    return result;
}

// ID PARENT MAJOR:MINOR ROOT FOLDER OPTIONS [FIELD...] - TYPE ...
std::optional<Mount> parseMount(std::string_view line)
{
    Mount mount;
    if (!parseNumber(takeWord(line), mount.id))
        return std::nullopt;
    takeWord(line);
    if (!parseDevice(takeWord(line), mount.device))
        return std::nullopt;
    takeWord(line);
    mount.folder = unescaped(takeWord(line));
    while (!line.empty() && takeWord(line) != "-") { }
    mount.type = unescaped(takeWord(line));
    return mount.type.empty() ? std::nullopt : std::optional(std::move(mount));
}

std::string readAll(int file)
{
    std::string text;
    char buffer[16384];
    for (;;) {
        const auto count = ::read(file, buffer, sizeof buffer);
        if (count > 0)
            text.append(buffer, static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return text;
    }
}

} // namespace

bool Mount::isBelow(std::string_view path) const
{
    return std::string_view(folder).starts_with(path)
        && (folder.size() == path.size() || folder[path.size()] == '/');
}

std::vector<Mount> readMounts()
{
    auto& reserve = DescriptorReserve::shared();
    const int file = reserve.openAt(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY);
    if (file < 0)
        return {};
    const auto text = readAll(file);
    reserve.close(file);
    return parseMounts(text);
}

std::vector<Mount> parseMounts(std::string_view text)
{
    std::vector<Mount> mounts;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        if (auto mount = parseMount(text.substr(0, end)))
            mounts.push_back(std::move(*mount));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return mounts;
}

} // namespace zef

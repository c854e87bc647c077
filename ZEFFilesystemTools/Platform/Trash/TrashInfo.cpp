// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashInfo.h"

#include <array>
#include <cmath>
#include <ctime>

namespace zef {
namespace {

bool standsForItself(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
        || (byte >= '0' && byte <= '9')
        || std::string_view("/-_.~").find(byte) != std::string_view::npos;
}

std::string percentEncoded(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        if (standsForItself(byte)) {
            text += byte;
            continue;
        }
        const auto value = static_cast<unsigned char>(byte);
        text += '%';
        text += digits[value >> 4];
        text += digits[value & 15];
    }
    return text;
}

std::string localTime(Date date)
{
    const auto seconds = static_cast<std::time_t>(std::floor(date.secondsSince1970()));
    std::tm parts{};
    std::array<char, 32> text{};
    if (!::localtime_r(&seconds, &parts))
        return {};
    return { text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts) };
}

} // namespace

std::string trashInfoText(std::string_view path, Date date)
{
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + localTime(date)
        + '\n';
}

} // namespace zef

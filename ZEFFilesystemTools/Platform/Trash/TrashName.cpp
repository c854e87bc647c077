// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashName.h"

#include <algorithm>

namespace zef {
namespace {

constexpr std::size_t longestName = 255 - TrashName::infoSuffix.size(); // NAME_MAX
constexpr std::size_t longestExtension = 32;

// The last dot of a name that doesn't only begin with it; the end where there is none, or where
// what follows is too long for something that says what the file is.
std::size_t beginOfExtension(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || name.size() - dot > longestExtension)
        return name.size();
    return dot;
}

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

// At most `length` bytes, without a torn character at the end. Bytes that are not UTF-8 are cut
// where they have to be.
std::string_view beginning(std::string_view text, std::size_t length)
{
    if (text.size() <= length)
        return text;
    auto end = length;
    while (end > 0 && length - end < 3 && continuesCharacter(text[end]))
        --end;
    return text.substr(0, continuesCharacter(text[end]) ? length : end);
}

} // namespace

TrashName::TrashName(std::string_view original)
    : _stem(original.substr(0, beginOfExtension(original)))
    , _extension(original.substr(_stem.size()))
{
}

std::string TrashName::numbered(unsigned number) const
{
    auto rest = number > 1 ? "." + std::to_string(number) : std::string();
    rest += _extension;
    return std::string(beginning(_stem, longestName - rest.size())) + rest;
}

} // namespace zef

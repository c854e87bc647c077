// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/HiddenList.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <limits>
#include <utility>

namespace zef {

HiddenList::HiddenList(std::string bytes)
    : _bytes(std::move(bytes))
{
    assert(_bytes.size() < std::numeric_limits<std::uint32_t>::max());
    for (std::size_t begin = 0; begin < _bytes.size();) {
        const auto end = std::min(_bytes.find('\n', begin), _bytes.size());
        const auto length = end - begin;
        if (length)
            _lines.push_back(
                { static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(length) });
        begin = end + 1;
    }
    _lines.shrink_to_fit();
    std::sort(_lines.begin(), _lines.end(),
        [this](Line one, Line other) { return text(one) < text(other); });
}

bool HiddenList::contains(std::string_view name) const
{
    const auto found = std::lower_bound(_lines.begin(), _lines.end(), name,
        [this](Line line, std::string_view wanted) { return text(line) < wanted; });
    return found != _lines.end() && text(*found) == name;
}

std::string_view HiddenList::text(Line line) const
{
    return std::string_view(_bytes).substr(line.begin, line.length);
}

} // namespace zef

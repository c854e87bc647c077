// SPDX-License-Identifier: MIT
#include "tools/zef/LineReader.h"

namespace tool {

void LineReader::append(std::string_view bytes)
{
    _buffer.erase(0, _begin);
    _searched -= _begin;
    _begin = 0;
    if (_skips) {
        const auto end = bytes.find('\n');
        if (end == std::string_view::npos)
            return;
        bytes.remove_prefix(end + 1);
        _skips = false;
    }
    _buffer += bytes;
}

void LineReader::finish()
{
    if (_begin < _buffer.size())
        _buffer += '\n';
}

std::optional<LineReader::Line> LineReader::takeLine()
{
    const auto end = _buffer.find('\n', _searched);
    if (end != std::string::npos)
        return take(end);
    _searched = _buffer.size();
    if (_buffer.size() - _begin <= _longestLine)
        return std::nullopt;
    _buffer = {};
    _begin = _searched = 0;
    _skips = true;
    return Line{ {}, true };
}

LineReader::Line LineReader::take(std::size_t end)
{
    const auto length = end - _begin;
    Line line;
    line.isTooLong = length > _longestLine;
    if (!line.isTooLong)
        line.text = _buffer.substr(_begin, length);
    _begin = _searched = end + 1;
    return line;
}

} // namespace tool

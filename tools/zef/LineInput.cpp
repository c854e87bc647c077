// SPDX-License-Identifier: MIT
#include "tools/zef/LineInput.h"

#include "tools/zef/Output.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace tool {

void LineInput::read()
{
    std::array<char, 65536> bytes;
    const auto count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    _hasFailed = count < 0;
    if (_hasFailed)
        complain("standard input", std::strerror(errno));
    _hasEnded = count <= 0;
    if (_hasEnded)
        finish();
    else
        append({ bytes.data(), static_cast<std::size_t>(count) });
}

void LineInput::append(std::string_view bytes)
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

void LineInput::finish()
{
    if (_begin < _buffer.size())
        _buffer += '\n';
}

std::optional<LineInput::Line> LineInput::takeLine()
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

LineInput::Line LineInput::take(std::size_t end)
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

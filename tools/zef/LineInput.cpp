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
        _lines.finish();
    else
        _lines.append({ bytes.data(), static_cast<std::size_t>(count) });
}

} // namespace tool

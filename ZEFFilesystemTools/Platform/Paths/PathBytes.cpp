// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

namespace zef {

PathBuffer makePathBuffer(std::string_view bytes)
{
    PathBuffer buffer(static_cast<char*>(std::malloc(bytes.size() + 1)));
    if (!buffer)
        return nullptr;
    bytes.copy(buffer.get(), bytes.size());
    buffer.get()[bytes.size()] = '\0';
    return buffer;
}

} // namespace zef

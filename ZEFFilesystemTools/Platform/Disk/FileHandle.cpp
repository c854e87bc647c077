// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileHandle.h"

#include "ZEFFilesystemTools/Platform/Disk/FNVDigest.h"

#include <algorithm>

namespace zef {

FileHandle FileHandle::of(std::uint8_t type, std::span<const std::byte> bytes, bool isDecodable)
{
    FileHandle handle;
    if (bytes.size() > handle.bytes.size()) {
        const auto digest = fnvDigest(bytes);
        handle = of(type, std::as_bytes(std::span(&digest, 1)), false);
        handle.isDigest = true;
        return handle;
    }
    handle.type = type;
    handle.length = static_cast<std::uint8_t>(bytes.size());
    handle.isDecodable = isDecodable;
    std::copy(bytes.begin(), bytes.end(), handle.bytes.begin());
    return handle;
}

} // namespace zef

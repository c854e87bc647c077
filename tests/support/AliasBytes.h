// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"
#include "ZEFFilesystemTools/Platform/Disk/FNVDigest.h"

#include <span>

/// Corrects the length and the digest in the head of alias data after a change. Leaves bytes alone
/// that are too short to have a head.
inline void repairDigest(zef::AliasData::Bytes& bytes)
{
    constexpr std::size_t headLength = 17;
    if (bytes.size() < headLength)
        return;
    const auto length = bytes.size() - headLength;
    const auto digest = zef::fnvDigest(std::span(bytes).subspan(headLength));
    for (std::size_t index = 0; index < 4; ++index)
        bytes[5 + index] = static_cast<std::byte>(length >> (8 * index));
    for (std::size_t index = 0; index < 8; ++index)
        bytes[9 + index] = static_cast<std::byte>(digest >> (8 * index));
}

// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

namespace zef {

/// The registry's key for an inode number: different for different numbers of up to 64 bits, and
/// for those below 2^32 `(inode << 16) | (inode >> 16)`.
constexpr std::uint64_t registryKeyOfInode(std::uint64_t inode)
{
    return std::rotl(inode, 16) ^ ((inode >> 16) & 0xffff);
}

/// The hash of a file; for inode numbers below 2^32 the number rotated by 16 bits, exclusive-or the
/// device number.
constexpr std::uint32_t hashOfFile(std::uint64_t inode, std::uint32_t device)
{
    const auto folded = static_cast<std::uint32_t>(inode) ^ static_cast<std::uint32_t>(inode >> 32);
    return std::rotl(folded, 16) ^ device;
}

} // namespace zef

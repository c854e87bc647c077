// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zef {

/// The FNV-1a digest of `bytes`. Detects damage, not forgery.
constexpr std::uint64_t fnvDigest(std::span<const std::byte> bytes)
{
    std::uint64_t digest = 14695981039346656037u;
    for (const auto byte : bytes)
        digest = (digest ^ std::to_integer<std::uint64_t>(byte)) * 1099511628211u;
    return digest;
}

} // namespace zef

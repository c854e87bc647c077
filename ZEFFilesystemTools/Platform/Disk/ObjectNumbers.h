// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/Stat.h"

#include <cstddef>
#include <cstdint>
#include <tuple>

namespace zef {

/// The numbers by which tables find an object: they distinguish it from all others that exist now,
/// but after its end they may go to another one. Plain data.
struct ObjectNumbers {
    std::uint64_t inode = 0;
    std::uint32_t device = 0;

    static ObjectNumbers of(const FSRef& ref) { return { ref.inode(), ref.device() }; }
    static ObjectNumbers of(const Stat& stat) { return { stat.inode, stat.device }; }

    friend bool operator==(const ObjectNumbers&, const ObjectNumbers&) = default;
    friend bool operator<(const ObjectNumbers& left, const ObjectNumbers& right)
    {
        return std::tie(left.inode, left.device) < std::tie(right.inode, right.device);
    }

    struct Hash {
        std::size_t operator()(const ObjectNumbers& numbers) const
        {
            // Neighbouring inode numbers are the rule; an odd factor spreads them (Knuth).
            const auto mixed = (numbers.inode ^ (std::uint64_t{ numbers.device } << 40))
                * 0x9e3779b97f4a7c15u;
            return static_cast<std::size_t>(mixed ^ mixed >> 32);
        }
    };
};

} // namespace zef

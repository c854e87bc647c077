// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <atomic>
#include <cstdint>

namespace zef {

/// A byte of flags that several threads read and change without a lock; `Flag` is an enum of single
/// bits.
template <typename Flag> class ZEF_EXPORT AtomicFlags {
public:
    bool has(Flag flag) const { return _bits.load(std::memory_order_acquire) & flag; }
    void set(Flag flag) { testAndSet(flag); }

    /// Sets the flag; true if it was set before.
    bool testAndSet(Flag flag) { return _bits.fetch_or(flag, std::memory_order_acq_rel) & flag; }

    void clear(Flag flag) { testAndClear(flag); }

    /// Clears the flag; true if it was set before.
    bool testAndClear(Flag flag)
    {
        const auto others = static_cast<std::uint8_t>(~flag);
        return _bits.fetch_and(others, std::memory_order_acq_rel) & flag;
    }

private:
    std::atomic<std::uint8_t> _bits{ 0 };
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <cstdint>

/// An answer that is yes, no, or not known yet.
class ZEF_EXPORT ZEFTriState {
public:
    bool isKnown() const { return _value <= 254; }
    bool isYes() const { return _value == 1; }
    /// 0, 1, or -1 while it isn't known.
    int rawValue() const { return static_cast<std::int8_t>(_value); }

    void set(bool yes) { _value = yes ? 1 : 0; }
    void forget() { _value = unknown; }

private:
    static constexpr std::uint8_t unknown = 255;

    std::uint8_t _value = unknown;
};

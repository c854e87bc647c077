// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <compare>

namespace zef {

/// A moment, as seconds since the reference date, 1 January 2001 00:00 UTC. DateChrono.h converts
/// it from and to the standard library's.
class ZEF_EXPORT Date {
public:
    /// Seconds from 1 January 1970 to the reference date.
    static constexpr double referenceDateSince1970 = 978307200.0;

    constexpr explicit Date(double secondsSinceReferenceDate)
        : _seconds(secondsSinceReferenceDate)
    {
    }

    static constexpr Date withSecondsSince1970(double seconds)
    {
        return Date(seconds - referenceDateSince1970);
    }

    constexpr double secondsSinceReferenceDate() const { return _seconds; }
    constexpr double secondsSince1970() const { return _seconds + referenceDateSince1970; }

    friend constexpr auto operator<=>(Date, Date) = default;

private:
    double _seconds;
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <stdexcept>

namespace zef {

/// Thrown by a walk over a collection that was changed during the walk: a programming error of the
/// caller, and the only exception that the library raises by itself.
class ZEF_EXPORT MutationError : public std::logic_error {
public:
    MutationError()
        : std::logic_error("a collection was changed while it was walked")
    {
    }
};

} // namespace zef

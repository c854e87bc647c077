// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"

#include <cstdint>

namespace zef {

/// An object that is held by a descriptor, and by how many.
struct HeldObject {
    FSRef ref;
    Ref<ObjectDescriptor> descriptor;
    /// The mount that it was opened through; 0 when it isn't known.
    std::uint64_t mountID = 0;
    std::uint32_t uses = 1;
};

} // namespace zef

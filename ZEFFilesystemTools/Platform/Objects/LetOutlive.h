// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

namespace zef {

/// Leaks one reference to `object` on purpose, so that it outlives its owner; `why` documents who
/// relies on that. LeakSanitizer learns of it, so that every other leak stays an error. Null does
/// nothing. Any thread.
void letOutlive(const ZEFObject* object, const char* why);

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

namespace zef {

/// Gives one more reference to `object` away for good, so that it outlives its owner on purpose;
/// `why` says to the reader of the call what relies on it. The leak checker is told, so that every
/// other leak stays an error. Nil does nothing. Any thread.
void letOutlive(const ZEFObject* object, const char* why);

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"

namespace tool {

/// Writes a line for each item to standard output: its path, fit for a terminal, or what is known
/// of it as JSON. Stops when the program has to end.
void printItems(const ZEFFileItemArray&, bool asJSON);

} // namespace tool

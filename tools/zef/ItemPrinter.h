// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

namespace tool {

enum class ItemFormat { paths, json };

/// Writes a line for each item to standard output: its path, fit for a terminal, or what is known
/// of it as JSON. Stops when the program has to end.
void printItems(const ZEFFileItemArray&, ItemFormat);

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

/// When the program's arguments say that it is to measure memory, does that and returns its exit
/// status; nothing otherwise.
///
/// The benchmarks of memory start the program anew for each figure: what other benchmarks left in
/// the registry's tables and in the heap would be missing from it.
std::optional<int> measureMemoryIfAsked(int argumentCount, char** arguments);

// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace zef {

/// Writes `YYYY-MM-DD hh:mm:ss PROGRAM[PID]: line` and a line end to standard error in one write,
/// so that lines of several threads and processes don't mix. What can't be written is lost. Any
/// thread.
void writeLineToStandardError(std::string_view line) noexcept;

} // namespace zef

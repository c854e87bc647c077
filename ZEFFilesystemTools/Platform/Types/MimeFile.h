// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace zef {

/// What came of reading a file of a MIME database.
enum class MimeFileResult { read, missing, unusable };

/// Sets `text` to what the file holds, links followed. Only a regular file of at most 4 MiB is
/// read, and nothing is waited for.
MimeFileResult readMimeFile(const std::string& path, std::string& text);

} // namespace zef

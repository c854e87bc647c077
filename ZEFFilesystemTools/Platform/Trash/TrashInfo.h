// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/Date.h"

#include <string>
#include <string_view>

namespace zef {

/// The record of a file in the trash: where it was, `path`, whose bytes are percent-encoded, and
/// when it went, in the system's local time. Any thread.
std::string trashInfoText(std::string_view path, Date date);

} // namespace zef

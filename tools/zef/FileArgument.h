// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <string>

namespace tool {

/// The item of the file that the user named by a path: of a link itself, unless a slash behind it
/// asks for the folder that it leads to. Nil when there is none; `reason` then says why, as the
/// system puts it.
zef::Ref<ZEFFileItem> itemOfArgument(
    const std::string& path, const ZEFFileItemClass& fileClass, std::string& reason);

} // namespace tool

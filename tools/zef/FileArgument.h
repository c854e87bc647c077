// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <functional>
#include <string>
#include <vector>

// What the user names by a path on the command line.

namespace tool {

/// The item of a file: of a link itself, unless a slash behind it asks for the folder that it leads
/// to. Null when there is none; `reason` then says why, as the system puts it.
zef::Ref<ZEFFileItem> itemOfArgument(
    const std::string& path, const ZEFFileItemClass& fileClass, std::string& reason);

/// Does the same with each file that there is, and complains of the others; `handle` returns why it
/// failed, or nothing. Returns the exit status.
int forEachArgument(const std::vector<std::string>& paths, const ZEFFileItemClass& fileClass,
    const std::function<std::string(ZEFFileItem&)>& handle);

/// Why a folder can't be listed or watched, as the system puts it; empty when it can.
std::string reasonNotToWatch(const std::string& path);

/// The path to watch: the one that the user named, as it is spelled, unless it names the folder
/// through a link or by dots. Those are resolved, because an item stands for a link itself and a
/// folder's parent is told by its path.
std::string pathToWatch(const std::string& path);

} // namespace tool

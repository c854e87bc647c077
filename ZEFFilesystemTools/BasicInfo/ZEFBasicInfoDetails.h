// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"

#include <optional>
#include <string>

/// What one basic info item has found out, beside its yeses and noes. Guarded by the item.
struct ZEFBasicInfoDetails {
    std::optional<std::string> fileName;
    std::optional<std::string> displayName;
    std::optional<std::string> uti;
    std::optional<std::string> resolvedUTI;
    std::optional<std::string> resolvedPath;
    std::optional<zef::FileURL> resolvedURL;
    /// Null for an item that is its own target, or while that isn't known.
    zef::Ref<ZEFFileItem> resolvedFile;
    bool isOwnTarget = false;
    zef::FSRef resolvedFSRef;
    /// Where that was when it was found.
    zef::FileURL targetURL;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"
#include "ZEFFilesystemTools/Platform/AliasData/AliasFolders.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Locator/HandleOpener.h"
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentityCache.h"

namespace zef {

/// Alias data over the kernel's own means, in the form of `AliasRecord`. Keeps what it learned of
/// volumes and folders for a moment; holds nothing open. Any thread.
class LinuxAliasData final : public AliasData {
public:
    FileError make(const FSRef& ref, const FileURL& url, Bytes& bytes) override;
    FileError resolve(const Bytes& bytes, FSRef& ref, FileURL& url) override;

private:
    VolumeIdentityCache _evidences;
    AliasFolders _folders;
    HandleOpener _opener;
};

} // namespace zef

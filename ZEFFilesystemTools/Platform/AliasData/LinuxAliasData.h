// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"
#include "ZEFFilesystemTools/Platform/Folders/FolderIndexCache.h"
#include "ZEFFilesystemTools/Platform/Locator/HandleOpener.h"
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentityCache.h"

namespace zef {

/// Alias data in the form of `AliasRecord`, from what the kernel says. Keeps what it learned of
/// volumes and folders for a moment; holds nothing open. Any thread.
class LinuxAliasData final : public AliasData {
public:
    Expected<Bytes> make(const FSRef& ref, const FileURL& url) override;
    Expected<Target> resolve(const Bytes& bytes) override;

private:
    VolumeIdentityCache _identities;
    /// Many references whose files are gone make it search the same folders.
    FolderIndexCache _indexes{ { .seconds = 2, .cost = 100'000 } };
    HandleOpener _opener;
};

} // namespace zef

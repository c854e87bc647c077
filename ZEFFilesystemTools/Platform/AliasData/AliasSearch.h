// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/SearchedVolume.h"
#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Locator/HandleOpener.h"
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentityCache.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zef {

/// Finds the object of one alias record: where it was; else, on each mounted volume that may be its
/// own, by its handle, along the recorded path, and by a search that ends after 20,000 entries or
/// 0.2 seconds. Every answer was looked at. One thread.
class AliasSearch {
public:
    /// What all searches share, borrowed.
    struct Means {
        VolumeIdentityCache& identities;
        FolderIndexCache& indexes;
        HandleOpener& opener;
    };

    /// The record is borrowed.
    AliasSearch(const Means&, const AliasRecord& record);

    /// `FileError::notFound` if the object is gone or can't be found.
    Expected<AliasData::Target> resolve();

private:
    enum class Progress { found, gone, open };

    bool lookAtLastPlace();
    bool isContradictedAt(const PathBytes& path) const;
    std::uint64_t fileSystemIDAt(std::string_view path) const;
    Progress searchMounts();
    Progress searchMount(const std::string& mountPoint, SearchBudget&);
    Progress openHandle(const std::string& mountPoint, const Stat& stat, std::uint64_t mountID);
    bool isSameVolume(const std::string& mountPoint, const Stat& stat, std::uint64_t mountID) const;

    Means _means;
    const AliasRecord& _record;
    AliasMatch _match;
};

} // namespace zef

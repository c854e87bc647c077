// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <cstdint>
#include <string_view>

namespace zef {

/// Says which entries of a folder its reader knows already.
class ZEF_EXPORT KnownEntries {
public:
    virtual ~KnownEntries() = default;

    /// Whether the reader knows the entry already; then the disk is not asked about it.
    virtual bool isKnown(std::string_view name, std::uint64_t inode) = 0;
};

} // namespace zef

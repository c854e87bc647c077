// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/Expected.h"
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <vector>

namespace zef {

/// Lasting references to files as bytes that a program can keep between its runs: they lead to the
/// file after it, or folders above it, were renamed or moved, after a restart of the machine and
/// with the volume mounted elsewhere.
///
/// Asks nobody anything and mounts nothing. Any thread.
class AliasData : public SharedService<AliasData> {
public:
    using Bytes = std::vector<std::byte>;

    /// What a lasting reference leads to.
    struct Target {
        FSRef ref;
        FileURL url;
    };

    virtual ~AliasData() = default;

    static AliasData& system();

    /// Makes a lasting reference to the object that `ref` refers to, last seen at `url` (may be
    /// null).
    virtual Expected<Bytes> make(const FSRef& ref, const FileURL& url) = 0;

    /// Finds the object that `bytes`, from wherever they come, refer to. Never answers with another
    /// object, also not with one that took its place.
    virtual Expected<Target> resolve(const Bytes& bytes) = 0;
};

} // namespace zef

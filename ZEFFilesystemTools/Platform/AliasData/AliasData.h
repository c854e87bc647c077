// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zef {

/// Lasting references to files as bytes that a program can keep between its runs: they lead to the
/// file after it, or folders above it, were renamed or moved, after a restart of the machine and
/// with the volume mounted elsewhere.
///
/// Asks nobody anything and mounts nothing. Errors are the numbers of `FileError`. Any thread.
class AliasData : public SharedService<AliasData> {
public:
    using Bytes = std::vector<std::byte>;

    virtual ~AliasData() = default;

    static AliasData& system();

    /// Sets `bytes` to a lasting reference to the object that `ref` refers to, last seen at `url`
    /// (may be nil).
    virtual FileError make(const FSRef& ref, const FileURL& url, Bytes& bytes) = 0;

    /// Finds the object that `bytes`, from wherever they come, refer to: its reference and where it
    /// is. Never answers with another object, also not with one that took its place.
    virtual FileError resolve(const Bytes& bytes, FSRef& ref, FileURL& url) = 0;
};

} // namespace zef

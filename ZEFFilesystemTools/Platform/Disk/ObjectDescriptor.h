// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

#include <cstdint>

namespace zef {

/// Holds one object on disk, whatever it is and whoever may read it, by an O_PATH descriptor;
/// closed when the last reference goes. Follows the object wherever it is moved on its volume.
///
/// While it is open the volume can't be unmounted, and a file without names keeps its blocks.
/// Immutable; any thread.
class ObjectDescriptor final : public ZEFObject {
public:
    /// Opens what is at `path`, the link itself where it is one; null with errno on failure.
    static Ref<ObjectDescriptor> open(const char* path);

    /// Takes over an open descriptor.
    explicit ObjectDescriptor(int descriptor)
        : _descriptor(descriptor)
    {
    }

    int descriptor() const { return _descriptor; }

    /// Describes the object; 0 or an errno value.
    [[nodiscard]] int stat(Stat&) const;
    /// The same, and the number of the mount that it was opened through; 0 if it isn't known.
    [[nodiscard]] int stat(Stat&, std::uint64_t& mountID) const;

    FileHandle handle() const;

    /// Whether it is the very object that `ref` refers to, if `stat` was just taken of it.
    bool isObject(const FSRef& ref, const Stat& stat) const;

    /// Whether the object's last name is gone, as far as is known without asking a server.
    bool isNameless() const;

    /// Writes where the system says that the object is. False if it doesn't say (no /proc, a path
    /// that is too long, an object outside of what the process sees). Not verified: the text of an
    /// object without that name ends in " (deleted)", and something may be mounted over the path.
    bool currentPath(PathBytes&) const;

private:
    ~ObjectDescriptor() override;

    int _descriptor;
};

} // namespace zef

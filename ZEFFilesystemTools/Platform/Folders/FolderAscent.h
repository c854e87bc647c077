// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"

#include <cstdint>
#include <vector>

namespace zef {

/// The way from a folder up to the root, as it is now, whatever links led to the folder. One thread
/// at a time.
class FolderAscent {
public:
    /// Goes up from `folder`; returns 0 or an errno value.
    [[nodiscard]] int climb(const Ref<ObjectDescriptor>& folder);

    /// The folder itself and all above it; the root is the last.
    const std::vector<ObjectNumbers>& folders() const { return _folders; }
    bool contains(const ObjectNumbers& folder) const;

    /// The highest folder of the mount that the folder was reached through; null after `closeTop`.
    const Ref<ObjectDescriptor>& top() const { return _top; }
    void closeTop() { _top = nullptr; }

    /// Whether the folder itself is the top.
    bool startsAtTop() const { return _startsAtTop; }

    /// Whether the folder and the top are on different devices though no mount lies between them,
    /// as in a nested subvolume of btrfs.
    bool isInNestedVolume() const { return _isInNestedVolume; }

private:
    struct Place {
        ObjectNumbers numbers;
        std::uint64_t mountID = 0;

        friend bool operator==(const Place&, const Place&) = default;
    };

    static int placeOf(const ObjectDescriptor& folder, Place& place);
    static bool areOnOneMount(const Place& one, const Place& other);

    std::vector<ObjectNumbers> _folders;
    Ref<ObjectDescriptor> _top;
    bool _startsAtTop = false;
    bool _isInNestedVolume = false;
};

} // namespace zef

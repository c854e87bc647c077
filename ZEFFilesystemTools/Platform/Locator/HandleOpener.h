// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <atomic>
#include <cstdint>

namespace zef {

/// Opens objects by their handles, which only a privileged process may (open_by_handle_at(2),
/// CAP_DAC_READ_SEARCH). Any thread.
class HandleOpener {
public:
    enum class Outcome {
        opened,
        /// The object exists no more.
        gone,
        /// There is no telling this way.
        unknown,
    };

    /// Opens the object that `ref` refers to and verifies that it is the one. `near` is somewhere
    /// on the same volume, if anything is known (may be nil). The refusal of one object ends all
    /// further tries: for good where the thread had the capability for it, and otherwise until it
    /// has.
    Outcome open(const FSRef& ref, const FileURL& near, Ref<ObjectDescriptor>& object);

    /// Whether the calling thread wasn't refused yet.
    bool mayOpen() const;

private:
    Outcome openOnMount(const FSRef& ref, int mount, Ref<ObjectDescriptor>& object);

    enum class Refusal : std::uint8_t { none, withoutCapability, forGood };

    std::atomic<Refusal> _refusal{ Refusal::none };
};

} // namespace zef

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/FSRef.h"
#include "ZEFFilesystemTools/Platform/FileURL.h"
#include "ZEFFilesystemTools/Platform/ObjectDescriptor.h"

#include <atomic>

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
    /// further tries.
    Outcome open(const FSRef& ref, const FileURL& near, Ref<ObjectDescriptor>& object);

    /// Whether the process wasn't refused yet.
    bool mayOpen() const { return _mayOpen.load(std::memory_order_relaxed); }

private:
    Outcome openOnMount(const FSRef& ref, int mount, Ref<ObjectDescriptor>& object);

    std::atomic<bool> _mayOpen{ true };
};

} // namespace zef

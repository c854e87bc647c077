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
        /// The handle could not decide.
        unknown,
    };

    struct [[nodiscard]] Result {
        Outcome outcome;
        /// Null unless it was opened.
        Ref<ObjectDescriptor> object = nullptr;
    };

    /// Opens the object that `ref` refers to and verifies that it is the one. `near` is somewhere
    /// on the same volume, if anything is known (may be null). The refusal of one object ends all
    /// further tries: for good if the thread had the capability for it, and otherwise until it has.
    Result open(const FSRef& ref, const FileURL& near);

    /// Whether the calling thread wasn't refused yet.
    bool mayOpen() const;

private:
    Result openOnMount(const FSRef& ref, int mount);

    enum class Refusal : std::uint8_t { none, withoutCapability, forGood };

    std::atomic<Refusal> _refusal{ Refusal::none };
};

} // namespace zef

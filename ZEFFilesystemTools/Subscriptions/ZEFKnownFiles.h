// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Objects/OrderedSet.h"
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"

#include <cstddef>

/// The files that a subscription knows in its folder, and the folders among them; retained. The
/// thread of the subscription.
class ZEFKnownFiles {
public:
    using Items = zef::OrderedSet<ZEFFileItem>;

    /// `observer` (borrowed) is the subscription, as which files that are forgotten are left.
    explicit ZEFKnownFiles(const ZEFObject& observer);
    /// Forgets every file.
    ~ZEFKnownFiles();
    ZEFKnownFiles(const ZEFKnownFiles&) = delete;
    ZEFKnownFiles& operator=(const ZEFKnownFiles&) = delete;

    /// In the order in which they were found. Walk it by index; indexes change only in `compact`.
    const Items& all() const { return _directoryInfo; }
    /// The same of the folders alone.
    const Items& folders() const { return _directoryInfoDirectoriesOnly; }

    /// False if the file is known already.
    bool insert(ZEFFileItem&);
    /// Ends the observation of the file and gives it up.
    void forget(ZEFFileItem&);
    /// Closes the gaps that forgotten files left, once they are many. Not during a walk.
    void compact();

    /// Has the files keep references to themselves: the next 512 at once, and whatever is left then
    /// in slices on the thread's run loop.
    void keepReferencesSoon();

private:
    void keepSomeReferences();

    const ZEFObject& _observer;
    Items _directoryInfo;
    Items _directoryInfoDirectoriesOnly;
    // Up to which index the files keep references.
    std::size_t _referencesKept = 0;
    zef::Ref<zef::Timer> _referenceTimer;
};

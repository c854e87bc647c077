// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashRefusal.h"

#include <span>

namespace zef {

/// One object that is to go to the trash.
struct TrashEntry {
    FSRef ref;
    /// Where it was last seen; it is found by its reference if it is no longer there.
    FileURL lastKnown;
};

enum class TrashOutcome {
    /// Everything is in the trash.
    moved,
    /// A look at the files showed that it can't be done. Nothing was touched.
    refused,
    /// A move failed, and what had been moved before was moved back.
    failed,
};

/// The desktop's trash, as other programs know it (freedesktop.org).
///
/// Any thread. Two threads, or programs, may use it at the same time.
class Trash : public SharedService<Trash> {
public:
    virtual ~Trash() = default;

    static Trash& system();

    /// Moves these objects to the trash of the volume that they are on: all of them, or none, and
    /// then `refusal` says why; otherwise it is empty. Links are moved themselves, folders with all
    /// that is in them; an object that is in the request twice, or lies in a folder of the request,
    /// goes once. Nothing is copied, and no other program is asked. Returns when everything is
    /// done.
    [[nodiscard]] virtual TrashOutcome moveToTrash(
        std::span<const TrashEntry>, TrashRefusal& refusal)
        = 0;
};

} // namespace zef

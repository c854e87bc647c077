// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileManager/ZEFFileManagerState.h"

#include <cstddef>

/// What only tests may do with the file manager and see of it.
class ZEFFileManagerTestAccess {
public:
    /// Shuts the one file manager down, if there is one, and forgets it; the next is a new one.
    static void forgetInstance() { ZEFFileManager::forgetInstance(); }

    /// How many release timers it keeps.
    static std::size_t releaseTimerCount()
    {
        return ZEFFileManager::defaultFileManager()
            ->_state->removedDirectoriesReleaseTimers->count();
    }
};

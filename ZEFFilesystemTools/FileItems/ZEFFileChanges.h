// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

/// What an observer learns when it asks about a file.
///
/// All false: the observer has learnt before that the file is lost. `exists` alone: unchanged.
/// `exists` and `modified`: changed. `exists` and `pathChanged`: moved or renamed. `pathChanged`
/// alone: lost.
struct ZEF_EXPORT ZEFFileChanges {
    /// The file is still there, at its old place or another.
    bool exists = false;
    /// The path that this observer last saw no longer leads to the file.
    bool pathChanged = false;
    /// Its time stamps differ from what this observer last saw, or something happened to it since.
    bool modified = false;

    friend bool operator==(const ZEFFileChanges&, const ZEFFileChanges&) = default;
};

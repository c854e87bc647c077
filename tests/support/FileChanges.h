// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileChanges.h"

#include <ostream>

// The answers that an observer may get.
inline constexpr ZEFFileChanges unchanged{ .exists = true };
inline constexpr ZEFFileChanges changed{ .exists = true, .modified = true };
inline constexpr ZEFFileChanges moved{ .exists = true, .pathChanged = true };
inline constexpr ZEFFileChanges lost{ .pathChanged = true };
inline constexpr ZEFFileChanges nothingToTell{};

/// How GoogleTest prints an answer.
// NOLINTNEXTLINE(readability-identifier-naming): the name is GoogleTest's
inline void PrintTo(const ZEFFileChanges& changes, std::ostream* stream)
{
    *stream << "{" << (changes.exists ? " exists" : "")
            << (changes.pathChanged ? " pathChanged" : "") << (changes.modified ? " modified" : "")
            << " }";
}

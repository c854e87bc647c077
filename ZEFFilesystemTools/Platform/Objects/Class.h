// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

// In namespace zef lies what stands between the file items and the system: URLs, references to
// files, the run loop, timers, queues and the like.
namespace zef {

/// A class as a value: its name and its superclass.
///
/// Each class has one constant record, which lives as long as the process; two records stand for
/// the same class exactly if they are the same object. Any thread.
struct ZEF_EXPORT Class {
    const char* name;
    const Class* superclass;

    /// Returns true if this class is `other` or inherits from it.
    constexpr bool isSubclassOf(const Class& other) const noexcept
    {
        for (const auto* candidate = this; candidate; candidate = candidate->superclass) {
            if (candidate == &other)
                return true;
        }
        return false;
    }
};

} // namespace zef

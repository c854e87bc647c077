// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

/// What stands for the system: URLs, references, the run loop, timers, queues and the like.
namespace zef {

/// What a class knows of itself when it is used as a value: its name and its superclass.
///
/// One constant record stands for each class and lives as long as the process; two records are the
/// same class exactly when they are the same object. Any thread.
struct ZEF_EXPORT Class {
    const char* name;
    const Class* superclass;

    /// Whether this class is `other` or inherits from it.
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

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <cstddef>
#include <string>

namespace zef {

/// Why a request to move files to the trash was not carried out.
struct ZEF_EXPORT TrashRefusal {
    /// The position of the file that stood in the way.
    std::size_t index = 0;
    /// The errno value that comes nearest; 0 if nothing was refused.
    int error = 0;
    /// For people, such as "Permission denied"; empty if nothing was refused.
    std::string reason;
    /// Whether every file is where it was. False if some other program took the place of one that
    /// had been moved already: that one stays in the trash, from where it can be restored.
    bool isUndone = true;
};

} // namespace zef

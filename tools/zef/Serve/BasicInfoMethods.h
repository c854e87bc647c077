// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/MethodTable.h"

namespace tool {

/// The methods about what people are shown of files.
class BasicInfoMethods {
public:
    static void addTo(MethodTable&);
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/MethodTable.h"

namespace tool {

/// The methods about the file manager as a whole.
class ManagerMethods {
public:
    /// The table must not outlive this object.
    void addTo(MethodTable&);

    /// Whether a client asked for the end.
    bool isShutDown() const { return _isShutDown; }

private:
    bool _isShutDown = false;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/LoadReporter.h"
#include "tools/zef/Serve/MethodTable.h"

#include <cstdint>
#include <map>

namespace tool {

/// The methods that list folders, most of them in the background.
class LoadMethods {
public:
    /// The table must not outlive this object.
    void addTo(MethodTable&);

    /// Ends every load; to be called before the file manager is shut down.
    void cancelAll();

private:
    JSON load(const Parameters&);
    JSON cancelLoad(const Parameters&);

    std::uint64_t _lastNumber = 0;
    std::map<std::uint64_t, zef::Ref<LoadReporter>> _loads;
};

} // namespace tool

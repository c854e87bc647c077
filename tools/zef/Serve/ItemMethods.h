// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/MethodTable.h"

#include <cstdint>
#include <unordered_map>

namespace tool {

/// The methods about single files, and the references that clients hold.
class ItemMethods {
public:
    /// The table must not outlive this object.
    void addTo(MethodTable&);

private:
    void addAccess(MethodTable&);
    static void addQuestions(MethodTable&);
    static void addObservation(MethodTable&);

    JSON fileItem(const Parameters&);
    JSON fileItemForArchiveDictionary(const Parameters&);
    JSON releaseItem(const Parameters&);
    JSON hold(const zef::Ref<ZEFFileItem>& item);

    std::unordered_map<std::uint64_t, zef::Ref<ZEFFileItem>> _held;
};

} // namespace tool

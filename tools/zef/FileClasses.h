// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <string_view>

namespace tool {

/// The classes of the program's file items.
class FileClasses {
public:
    // These are items with numbers; see `NumberedItem`.
    static const ZEFFileItemClass& plain();
    static const ZEFFileItemClass& basicInfo();

    /// The class that the option `--plain` asks for, or its absence.
    static const ZEFFileItemClass& chosen(bool isPlain) { return isPlain ? plain() : basicInfo(); }

    /// The same for items that are only printed: only as JSON do they need numbers.
    static const ZEFFileItemClass& printed(bool isPlain, bool asJSON);

    /// The class with numbers that has this name; null when there is none.
    static const ZEFFileItemClass* named(std::string_view name);
};

} // namespace tool

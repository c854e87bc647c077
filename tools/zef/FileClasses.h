// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <string_view>

namespace tool {

/// The classes of the program's file items. Their items have numbers; see `NumberedItem`.
class FileClasses {
public:
    static const ZEFFileItemClass& plain();
    static const ZEFFileItemClass& basicInfo();

    /// The class that the option `--plain` asks for, or its absence.
    static const ZEFFileItemClass& chosen(bool isPlain) { return isPlain ? plain() : basicInfo(); }

    /// The class with this name; null when there is none.
    static const ZEFFileItemClass* named(std::string_view name);

    /// The item as one with basic info; null for a plain one.
    static ZEFBasicInfoFileItem* basicInfoItem(ZEFFileItem&);
};

} // namespace tool

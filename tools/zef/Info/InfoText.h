// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include "tools/zef/Paint.h"

#include <string>
#include <string_view>

namespace tool {

/// Tells people of files, one after the other: the path, and below it a line for each thing known.
class InfoText {
public:
    /// What there is to tell of the item, apart from what was told before it by an empty line.
    std::string text(ZEFFileItem&);

private:
    void addBasicInfo(ZEFBasicInfoFileItem&);
    void addTarget(ZEFBasicInfoFileItem&);
    void addType(
        std::string_view label, std::string_view labelOfAncestors, const std::string& type);
    void addReference(const ZEFFileItem&);
    void addLine(std::string_view label, const std::string& value);

    Paint _paint;
    std::string _text;
    bool _hasTold = false;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace tool {

/// JSON whose objects keep the order in which they were made.
using JSON = nlohmann::ordered_json;

/// The name of an event: "moved", "movedInParent".
const char* nameOfEvent(ZEFFileEvent);

/// The item as last seen, without a look at the disk; nil is null.
JSON jsonOfItem(const ZEFFileItem*);
/// The same with what is known of the item beside it, as last seen too.
JSON jsonOfItemInFull(const ZEFFileItem&);
/// What people are shown of the file; looks at the disk for what isn't known yet.
JSON jsonOfBasicInfo(ZEFBasicInfoFileItem&);
JSON jsonOfItems(const ZEFFileItemArray&);
JSON jsonOfChanges(const ZEFChangeArray&);

/// The whole URL, exact; nil is null.
JSON jsonOfURL(const zef::FileURL&);
/// The path as text; nil is null.
JSON jsonOfPath(const zef::FileURL&);

/// One line with its end. Bytes that are no valid UTF-8 become U+FFFD.
std::string lineOfJSON(const JSON&);

} // namespace tool

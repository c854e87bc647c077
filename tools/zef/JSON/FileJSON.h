// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionProtocol.h"

#include "tools/zef/JSON/JSON.h"

class ZEFBasicInfoFileItem;

namespace tool {

/// The item as last seen, without a look at the disk; null is null.
JSON jsonOfItem(const ZEFFileItem*);
/// The same with what is known of the item beside it, as last seen too.
JSONObject jsonOfItemInFull(const ZEFFileItem&);
/// Adds what people are shown of the file; looks at the disk for what isn't known yet.
void addBasicInfo(JSONObject&, ZEFBasicInfoFileItem&);
JSON jsonOfItems(const zef::Array<ZEFFileItem>&);
JSON jsonOfChanges(const ZEFChangeArray&);

/// The whole URL, exact; null is null.
JSON jsonOfURL(const zef::FileURL&);
/// The path as text; null is null.
JSON jsonOfPath(const zef::FileURL&);

} // namespace tool

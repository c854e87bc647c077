// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

#include "tools/zef/JSON/JSON.h"
#include "tools/zef/JSON/JSONValue.h"

namespace tool {

/// The dictionary as one object: data in base64, booleans as such. JSON can't write every path, so
/// one that is not valid UTF-8 stands there once more as a URL, under `ZEFArchivePathURL`.
JSON jsonOfArchive(const ZEFArchiveDictionary&);

/// The dictionary that `jsonOfArchive` made `object` of; what it doesn't know is passed over, and
/// null stands for left out. Throws `std::invalid_argument`, which says what is wrong.
zef::Ref<ZEFArchiveDictionary> archiveOfJSON(const JSONValue& object);

} // namespace tool

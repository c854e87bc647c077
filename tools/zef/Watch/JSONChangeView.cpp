// SPDX-License-Identifier: MIT
#include "tools/zef/Watch/JSONChangeView.h"

#include "tools/zef/JSON/FileJSON.h"

namespace tool {

std::string JSONChangeView::textOfChanges(
    const WatchedFolder& folder, const ZEFChangeArray& changes)
{
    const auto url = folder.subscription().url();
    return JSONObject()
        .add("folder", jsonOfPath(url))
        .add("url", jsonOfURL(url))
        .add("changes", jsonOfChanges(changes))
        .line();
}

} // namespace tool

// SPDX-License-Identifier: MIT
#include "tools/zef/Watch/JSONChangeView.h"

#include "tools/zef/FileJSON.h"
#include "tools/zef/Output.h"

namespace tool {

void JSONChangeView::showChanges(const WatchedFolder& folder, const ZEFChangeArray& changes)
{
    const auto url = folder.subscription().url();
    Output::standardOutput().write(lineOfJSON({
        { "folder", jsonOfPath(url) },
        { "url", jsonOfURL(url) },
        { "changes", jsonOfChanges(changes) },
    }));
}

} // namespace tool

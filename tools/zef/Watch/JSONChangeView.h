// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Watch/ChangeView.h"

namespace tool {

/// One JSON object a line for each notification, and nothing else.
class JSONChangeView final : public ChangeView {
public:
    std::string textOfFolder(const WatchedFolder&) override { return {}; }
    std::string textOfLoaded(const WatchedFolder&) override { return {}; }
    std::string textOfChanges(const WatchedFolder&, const ZEFChangeArray&) override;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Watch/ChangeView.h"

namespace tool {

/// Writes one JSON object a line for each notification, and nothing else.
class JSONChangeView final : public ChangeView {
public:
    void showFolder(const WatchedFolder&) override { }
    void showLoaded(const WatchedFolder&) override { }
    void showChanges(const WatchedFolder&, const ZEFChangeArray&) override;
};

} // namespace tool

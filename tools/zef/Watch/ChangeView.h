// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Watch/WatchedFolder.h"

namespace tool {

/// Shows what is watched and what happens there.
class ChangeView {
public:
    virtual ~ChangeView() = default;

    /// The folder is watched from now on; its files may still be loading.
    virtual void showFolder(const WatchedFolder&) = 0;
    /// The folder's files are all known now.
    virtual void showLoaded(const WatchedFolder&) = 0;
    /// What one notification brought; perhaps nothing.
    virtual void showChanges(const WatchedFolder&, const ZEFChangeArray&) = 0;
};

} // namespace tool

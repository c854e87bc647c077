// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Watch/WatchedFolder.h"

#include <string>

namespace tool {

/// Puts what is watched, and what happens there, into text.
class ChangeView {
public:
    virtual ~ChangeView() = default;

    /// The folder is watched from now on; its files may still be loading.
    virtual std::string textOfFolder(const WatchedFolder&) = 0;
    /// The folder's files are all known now.
    virtual std::string textOfLoaded(const WatchedFolder&) = 0;
    /// What one notification brought; perhaps nothing.
    virtual std::string textOfChanges(const WatchedFolder&, const ZEFChangeArray&) = 0;
};

} // namespace tool

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

/// What only tests may see of a loader.
class ZEFAsynchronousFileLoaderTestAccess {
public:
    static zef::Lock& lock(ZEFAsynchronousFileLoader& loader) { return *loader._loadingArrayLock; }
    static ZEFFileLoadOperation& operation(ZEFAsynchronousFileLoader& loader)
    {
        return *loader._fileLoadOperation;
    }
};

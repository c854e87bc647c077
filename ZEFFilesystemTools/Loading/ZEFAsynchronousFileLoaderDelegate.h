// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"

class ZEFAsynchronousFileLoader;

/// Whom a loader tells of its end: a `ZEFObject` that also inherits from this protocol. It is never
/// retained; cancel the loader before its delegate dies.
class ZEF_EXPORT ZEFAsynchronousFileLoaderDelegate {
public:
    /// `files` are all that were found; both are borrowed. Called once, on the thread that started
    /// the load, and not after `cancel`. May do anything with the loader.
    virtual void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader* loader, ZEFFileItemArray* files)
        = 0;

protected:
    virtual ~ZEFAsynchronousFileLoaderDelegate() = default;
};

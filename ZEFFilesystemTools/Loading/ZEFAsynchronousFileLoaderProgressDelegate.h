// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <cstdint>

class ZEFAsynchronousFileLoader;

/// What a delegate of a loader also inherits from when it wants to be told how far the load is.
class ZEF_EXPORT ZEFAsynchronousFileLoaderProgressDelegate {
public:
    /// `count` files were found so far, `latestFile` (nil before the first) last; both objects are
    /// borrowed. Called ten times a second, whether or not the count has changed, on the thread
    /// that started the load. May do anything with the loader.
    virtual void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader* loader, std::uint32_t count, ZEFFileItem* latestFile)
        = 0;

protected:
    virtual ~ZEFAsynchronousFileLoaderProgressDelegate() = default;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Objects/Array.h"
#include "ZEFFilesystemTools/Platform/Threads/Lock.h"
#include "ZEFFilesystemTools/Platform/Threads/Operation.h"

/// The files that a load found, in the order in which it found them.
using ZEFFileItemArray = zef::Array<ZEFFileItem>;

/// An operation that collects file items in an array which other threads may read, or empty, while
/// it runs and they hold `loadingArrayLock`.
///
/// Once it is finished nobody else writes to the array.
class ZEF_EXPORT ZEFLoadingOperation : public zef::Operation {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    /// Borrowed; never null unless a host set it so.
    ZEFFileItemArray* loadingArray() const { return _loadingArray.get(); }
    /// Before the operation starts.
    void setLoadingArray(zef::Ref<ZEFFileItemArray>);

    /// Borrowed, like the array.
    zef::Lock* loadingArrayLock() const { return _loadingArrayLock.get(); }
    /// Before the operation starts.
    void setLoadingArrayLock(zef::Ref<zef::Lock>);

protected:
    ZEFLoadingOperation();
    ~ZEFLoadingOperation() override;

private:
    zef::Ref<zef::Lock> _loadingArrayLock;
    zef::Ref<ZEFFileItemArray> _loadingArray;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

/// Decides which files a load delivers; this one takes every file. Stateless; used on the thread of
/// the load, by any number of loads at once.
class ZEF_EXPORT ZEFFileFilter : public ZEFObject {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFFileFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFFileFilter> filter();

    /// Whether `file` (may be nil) goes into the result.
    virtual bool shouldIncludeFile(ZEFFileItem* file) const;
};

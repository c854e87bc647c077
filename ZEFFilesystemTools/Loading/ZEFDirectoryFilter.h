// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileFilter.h"

/// Decides which folders a recursive load descends into, and which folder is listed for a file;
/// this one takes every real folder, packages and hidden ones too, and follows no alias.
class ZEF_EXPORT ZEFDirectoryFilter : public ZEFFileFilter {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFDirectoryFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFDirectoryFilter> filter();

    /// Whether `file` is a folder; NO for nil.
    bool shouldIncludeFile(ZEFFileItem* file) const override;

    /// The folder to list for `file`, which `shouldIncludeFile` took: here `file` itself.
    virtual zef::Ref<ZEFFileItem> trueDirectoryObjectForFile(ZEFFileItem* file) const;
};

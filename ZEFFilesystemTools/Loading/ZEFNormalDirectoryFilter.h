// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFDirectoryFilter.h"

/// Takes the folders that people open: none that is hidden or a package, but those that an alias or
/// a link leads to. For loads whose items are `ZEFBasicInfoFileItem`s: others don't know what they
/// are, and none of them passes.
class ZEF_EXPORT ZEFNormalDirectoryFilter : public ZEFDirectoryFilter {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFNormalDirectoryFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFNormalDirectoryFilter> filter();

    /// Whether `file` is, or leads to, a folder that is no package, and is not itself invisible; NO
    /// for nil.
    bool shouldIncludeFile(ZEFFileItem* file) const override;

    /// The target of an alias or a link, otherwise `file` itself; nil when there is none.
    zef::Ref<ZEFFileItem> trueDirectoryObjectForFile(ZEFFileItem* file) const override;
};

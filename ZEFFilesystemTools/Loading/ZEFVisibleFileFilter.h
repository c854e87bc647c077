// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileFilter.h"

/// Takes what isn't hidden from people. For loads whose items are `ZEFBasicInfoFileItem`s: others
/// don't know what is hidden, and all of them pass.
class ZEF_EXPORT ZEFVisibleFileFilter : public ZEFFileFilter {
public:
    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFVisibleFileFilter() = default;

    /// A new filter of this class.
    static zef::Ref<ZEFVisibleFileFilter> filter();

    /// NO for an invisible file alone; YES for nil.
    bool shouldIncludeFile(ZEFFileItem* file) const override;
};

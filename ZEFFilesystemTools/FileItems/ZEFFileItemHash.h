// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

/// For tables of file items that are told apart by `isEqual`; no element is null.
struct ZEF_EXPORT ZEFFileItemHash {
    std::size_t operator()(const zef::Ref<ZEFFileItem>& item) const { return item->hash(); }
};

/// Belongs to `ZEFFileItemHash`.
struct ZEF_EXPORT ZEFFileItemEqual {
    bool operator()(const zef::Ref<ZEFFileItem>& left, const zef::Ref<ZEFFileItem>& right) const
    {
        return left->isEqual(right.get());
    }
};

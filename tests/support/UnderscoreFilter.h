// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFilters.h"

#include "tests/support/ChangeWords.h"

/// Takes the files whose names don't begin with an underscore, and remembers what it was asked.
class UnderscoreFilter final : public ZEFFileFilter {
public:
    bool shouldIncludeFile(ZEFFileItem* file) const override
    {
        asked.push_back(nameOf(*file));
        return asked.back()[0] != '_';
    }

    mutable Words asked;
};

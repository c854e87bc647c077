// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/CatalogIterator.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

/// Knows the names that the test gives it, and remembers which entries it was asked about.
class KnownNames final : public zef::KnownEntries {
public:
    bool isKnown(std::string_view name, std::uint64_t inode) override
    {
        asked[std::string(name)] = inode;
        return names.contains(std::string(name));
    }

    std::set<std::string> names;
    std::map<std::string, std::uint64_t> asked;
};

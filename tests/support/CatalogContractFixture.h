// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// For tests that every catalog must pass, the real one and the fake.
template <typename Folders> class CatalogContractFixture : public testing::Test {
protected:
    struct Listing {
        zef::FileError result = zef::FileError::none;
        std::vector<std::string> names;
        std::vector<std::size_t> batches;
    };

    void addEntries(const std::string& folder, std::size_t count)
    {
        for (std::size_t index = 0; index < count; ++index)
            folders.addEntry(folder, "entry " + std::to_string(index));
    }

    zef::CatalogIterator::Opened open(std::string_view name)
    {
        const zef::FSRef ref(folders.stat(name));
        return folders.service().openIterator(&ref, folders.url(name));
    }

    std::unique_ptr<zef::CatalogIterator> opened(std::string_view name)
    {
        auto iterator = open(name);
        EXPECT_EQ(iterator.error(), zef::FileError::none);
        return iterator ? *std::move(iterator) : nullptr;
    }

    // One read; false at the end and on an error, which `listing` then has.
    bool read(zef::CatalogIterator& iterator, Listing& listing)
    {
        std::size_t count = 1000;
        listing.result = iterator.next(entries, count);
        listing.batches.push_back(count);
        for (std::size_t index = 0; index < count; ++index)
            listing.names.emplace_back(entries.at(index).name());
        return listing.result == zef::FileError::none;
    }

    Listing readAll(zef::CatalogIterator& iterator)
    {
        Listing listing;
        while (read(iterator, listing)) { }
        std::sort(listing.names.begin(), listing.names.end());
        return listing;
    }

    std::size_t count(std::string_view name)
    {
        const zef::FSRef ref(folders.stat(name));
        const auto result = folders.service().countEntries(&ref, folders.url(name));
        EXPECT_EQ(result.error(), zef::FileError::none);
        return result ? *result : 0;
    }

    zef::CatalogEntry& entryNamed(std::string_view name)
    {
        return *std::find_if(entries.begin(), entries.end(),
            [name](const auto& entry) { return entry.name() == name; });
    }

    Folders folders;
    std::array<zef::CatalogEntry, 40> entries;
};

// SPDX-License-Identifier: MIT
#include "tests/support/FakeCatalog.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

using Result = zef::FileError;

class FakeCatalogTest : public testing::Test {
protected:
    FakeCatalogTest()
    {
        stat.device = 1;
        stat.inode = 2;
        stat.mode = 0040755;
        entryStat.device = 1;
        entryStat.mode = 0100644;
        catalog.add(url, stat);
    }

    void addEntries(std::size_t total)
    {
        for (std::size_t index = 0; index < total; ++index) {
            entryStat.inode = 100 + index;
            catalog.addEntry(url, "entry " + std::to_string(index), entryStat);
        }
    }

    std::unique_ptr<zef::CatalogIterator> open()
    {
        const zef::FSRef ref(stat);
        auto iterator = catalog.openIterator(&ref, url);
        EXPECT_EQ(iterator.error(), Result::none);
        return iterator ? *std::move(iterator) : nullptr;
    }

    zef::FileURL url = zef::FileURL::fromPath("/folder", zef::URLKind::folder);
    zef::Stat stat;
    zef::Stat entryStat;
    FakeCatalog catalog;
    std::array<zef::CatalogEntry, 40> entries;
    std::size_t count = 0;
};

TEST_F(FakeCatalogTest, StandsInForTheSharedOne)
{
    EXPECT_EQ(&zef::Catalog::shared(), &catalog);
}

TEST_F(FakeCatalogTest, GivesNamesThatNoDiskHas)
{
    catalog.addEntry(url, "a/b", entryStat);
    catalog.addEntry(url, "", entryStat);
    auto iterator = open();

    EXPECT_EQ(iterator->next(entries, count), Result::noMoreItems);
    ASSERT_EQ(count, 2u);
    EXPECT_EQ(entries[0].name(), "a/b");
    EXPECT_EQ(entries[1].name(), "");
    EXPECT_THROW(catalog.addEntry(url, std::string(256, 'n'), entryStat), std::length_error);
}

TEST_F(FakeCatalogTest, FailsToOpenAsTheTestSays)
{
    catalog.setOpenResult(url, Result::tooManyOpenFiles);
    const zef::FSRef ref(stat);

    EXPECT_EQ(catalog.openIterator(&ref, url).error(), Result::tooManyOpenFiles);
    EXPECT_EQ(catalog.openCount(), 1u);
}

TEST_F(FakeCatalogTest, FailsToReadAfterTheEntriesThatTheTestSays)
{
    addEntries(100);
    catalog.setReadResult(url, Result::io, 50);
    auto iterator = open();

    EXPECT_EQ(iterator->next(entries, count), Result::none);
    EXPECT_EQ(count, 40u);
    EXPECT_EQ(iterator->next(entries, count), Result::none);
    EXPECT_EQ(count, 10u);
    EXPECT_EQ(iterator->next(entries, count), Result::io);
    EXPECT_EQ(count, 0u);
}

TEST_F(FakeCatalogTest, FailsToCountAsTheTestSays)
{
    addEntries(3);
    catalog.setCountResult(url, Result::io);
    const zef::FSRef ref(stat);

    EXPECT_EQ(catalog.countEntries(&ref, url).error(), Result::io);
    EXPECT_EQ(catalog.countingCount(), 1u);
}

TEST_F(FakeCatalogTest, CallsTheTestBeforeEachRead)
{
    addEntries(50);
    std::vector<std::size_t> reads;
    catalog.setReadHook([&](std::size_t earlier) {
        reads.push_back(earlier);
        if (earlier == 1)
            catalog.removeEntry(url, "entry 45");
    });
    auto iterator = open();

    std::ignore = iterator->next(entries, count);
    EXPECT_EQ(iterator->next(entries, count), Result::noMoreItems);
    EXPECT_EQ(count, 9u);
    EXPECT_EQ(reads, (std::vector<std::size_t>{ 0, 1 }));
}

} // namespace

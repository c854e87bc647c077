// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

namespace {

using Result = zef::FileError;

class CatalogTest : public testing::Test {
protected:
    std::unique_ptr<zef::CatalogIterator> open(std::string_view name)
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), stat);
        const zef::FSRef ref(stat);
        auto iterator = zef::Catalog::system().openIterator(&ref, folder.folderUrl(name));
        EXPECT_EQ(iterator.error(), Result::none);
        return iterator ? *std::move(iterator) : nullptr;
    }

    TemporaryFolder folder;
    std::array<zef::CatalogEntry, 40> entries;
    std::size_t count = 0;
};

TEST_F(CatalogTest, DescribesALinkItself)
{
    folder.makeFolder("folder");
    folder.symlink("nowhere", "folder/dangling");

    auto iterator = open("folder");

    ASSERT_TRUE(iterator);
    EXPECT_EQ(iterator->next(entries, count), Result::noMoreItems);
    ASSERT_EQ(count, 1u);
    EXPECT_TRUE(entries[0].stat.isSymlink());
    EXPECT_FALSE(entries[0].isFolder);
}

TEST_F(CatalogTest, MayNotReadAFolderThatMayNotBeSearched)
{
    folder.makeFolder("folder");
    folder.write("folder/file");
    auto iterator = open("folder");
    ASSERT_TRUE(iterator);
    folder.chmod("folder", 0400);
    const WithoutPrivileges plain;

    EXPECT_EQ(iterator->next(entries, count), Result::accessDenied);
    EXPECT_EQ(count, 0u);
}

TEST_F(CatalogTest, ReadsAFolderOnWhenPermissionToReadIsTakenAway)
{
    folder.makeFolder("folder");
    for (int index = 0; index < 50; ++index)
        folder.write("folder/" + std::to_string(index));
    auto iterator = open("folder");
    ASSERT_TRUE(iterator);
    ASSERT_EQ(iterator->next(entries, count), Result::none);
    folder.chmod("folder", 0300);
    const WithoutPrivileges plain;

    EXPECT_EQ(iterator->next(entries, count), Result::noMoreItems);
    EXPECT_EQ(count, 10u);
}

TEST_F(CatalogTest, ReadsThroughAPathWithLinks)
{
    folder.makeFolder("real");
    folder.makeFolder("real/folder");
    folder.write("real/folder/file");
    folder.symlink("real", "link");

    auto iterator = open("link/folder");

    ASSERT_TRUE(iterator);
    EXPECT_EQ(iterator->next(entries, count), Result::noMoreItems);
    EXPECT_EQ(count, 1u);
}

TEST_F(CatalogTest, DeliversWhatItHasCounted)
{
    folder.makeFolder("folder");
    for (int number = 0; number < 30; ++number)
        folder.write("folder/" + std::to_string(number));
    zef::Stat stat;
    zef::FileSystem::system().statLink(folder.path("folder").c_str(), stat);
    const zef::FSRef ref(stat);

    const auto counted = zef::Catalog::system().countEntriesAndKeep(
        &ref, folder.folderUrl("folder"));

    ASSERT_TRUE(counted);
    EXPECT_EQ(counted->count, 30u);
    ASSERT_TRUE(counted->iterator);
    folder.write("folder/later");
    EXPECT_EQ(counted->iterator->next(entries, count), Result::noMoreItems);
    EXPECT_EQ(count, 30u);
}

TEST_F(CatalogTest, SaysWhyAFolderCannotBeCounted)
{
    folder.write("file");
    zef::Stat stat;
    zef::FileSystem::system().statLink(folder.path("file").c_str(), stat);
    const zef::FSRef ref(stat);

    EXPECT_EQ(zef::Catalog::system().countEntriesAndKeep(&ref, folder.url("file")).error(),
        Result::notAFolder);
}

} // namespace

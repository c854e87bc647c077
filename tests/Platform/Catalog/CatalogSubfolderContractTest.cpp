// SPDX-License-Identifier: MIT
#include "tests/support/CatalogContractFixture.h"
#include "tests/support/FakeFolders.h"
#include "tests/support/KnownNames.h"
#include "tests/support/RealFolders.h"

#include <gtest/gtest.h>

#include <map>
#include <type_traits>

namespace {

using Result = zef::FileError;
using Names = std::vector<std::string>;

/// Going down into folders, and holding no descriptor meanwhile.
template <typename Folders>
class CatalogSubfolderContractTest : public CatalogContractFixture<Folders> {
protected:
    CatalogSubfolderContractTest()
    {
        this->folders.addFolder("folder");
        this->folders.addFolderEntry("folder", "sub");
        this->folders.addEntry("folder/sub", "file");
        parent = this->opened("folder");
    }

    /// Reads the parent's batch and opens the subfolder by its entry.
    void openSubfolder()
    {
        typename CatalogContractFixture<Folders>::Listing listing;
        this->read(*parent, listing);
        auto opened = parent->openSubfolder(
            this->entryNamed("sub"), this->folders.url("folder/sub"));
        ASSERT_TRUE(opened);
        subfolder = *std::move(opened);
    }

    /// How often each name was delivered.
    static std::map<std::string, int> times(const Names& names)
    {
        std::map<std::string, int> counts;
        for (const auto& name : names)
            ++counts[name];
        return counts;
    }

    std::unique_ptr<zef::CatalogIterator> parent;
    std::unique_ptr<zef::CatalogIterator> subfolder;
};

using BothFolders = testing::Types<RealFolders, FakeFolders>;

struct FoldersName {
    template <typename Folders> static std::string GetName(int)
    {
        return std::is_same_v<Folders, RealFolders> ? "Real" : "Fake";
    }
};

TYPED_TEST_SUITE(CatalogSubfolderContractTest, BothFolders, FoldersName);

// --- Subfolders

TYPED_TEST(CatalogSubfolderContractTest, OpensTheFolderThatAnEntryStandsFor)
{
    ASSERT_NO_FATAL_FAILURE(this->openSubfolder());

    EXPECT_EQ(this->readAll(*this->subfolder).names, Names{ "file" });
}

TYPED_TEST(CatalogSubfolderContractTest, OpensAFolderInOneThatWasOpenedSo)
{
    this->folders.addFolderEntry("folder/sub", "deep");
    this->folders.addEntry("folder/sub/deep", "below");
    ASSERT_NO_FATAL_FAILURE(this->openSubfolder());
    this->readAll(*this->subfolder);

    const auto deep = this->subfolder->openSubfolder(
        this->entryNamed("deep"), this->folders.url("folder/sub/deep"));

    ASSERT_TRUE(deep);
    EXPECT_EQ(this->readAll(**deep).names, Names{ "below" });
}

TYPED_TEST(CatalogSubfolderContractTest, DescribesTheEntriesOfASubfolder)
{
    ASSERT_NO_FATAL_FAILURE(this->openSubfolder());
    this->readAll(*this->subfolder);
    const auto& entry = this->entryNamed("file");

    EXPECT_TRUE(entry.ref.hasNumbersOf(this->folders.stat("folder/sub/file")));
    EXPECT_EQ(entry.ref.parentInode(), this->folders.stat("folder/sub").inode);
}

TYPED_TEST(CatalogSubfolderContractTest, OpensASubfolderWhileItsParentIsSuspended)
{
    typename TestFixture::Listing listing;
    this->read(*this->parent, listing);
    this->parent->suspend();

    const auto opened = this->parent->openSubfolder(
        this->entryNamed("sub"), this->folders.url("folder/sub"));

    ASSERT_TRUE(opened);
    EXPECT_EQ(this->readAll(**opened).names, Names{ "file" });
}

TYPED_TEST(CatalogSubfolderContractTest, OpensNoSubfolderThatIsGone)
{
    typename TestFixture::Listing listing;
    this->read(*this->parent, listing);
    const auto url = this->folders.url("folder/sub");
    this->folders.remove("folder/sub");

    EXPECT_EQ(this->parent->openSubfolder(this->entryNamed("sub"), url).error(), Result::notFound);
}

TYPED_TEST(CatalogSubfolderContractTest, FindsASubfolderThatWasMovedSinceItWasRead)
{
    typename TestFixture::Listing listing;
    this->read(*this->parent, listing);
    const auto url = this->folders.url("folder/sub");
    this->folders.move("folder/sub", "folder/moved");

    const auto opened = this->parent->openSubfolder(this->entryNamed("sub"), url);

    ASSERT_TRUE(opened);
    EXPECT_EQ(this->readAll(**opened).names, Names{ "file" });
}

// --- Suspended

TYPED_TEST(CatalogSubfolderContractTest, DeliversEachEntryOnceWhenItIsSuspendedBetweenReads)
{
    this->addEntries("folder", 1000);
    typename TestFixture::Listing listing;
    while (this->read(*this->parent, listing))
        this->parent->suspend();

    EXPECT_EQ(listing.result, Result::noMoreItems);
    EXPECT_EQ(listing.names.size(), 1001u);
    EXPECT_EQ(this->times(listing.names).size(), 1001u);
}

TYPED_TEST(CatalogSubfolderContractTest, DeliversEverythingWhenItIsSuspendedBeforeTheFirstRead)
{
    this->addEntries("folder", 100);
    this->parent->suspend();
    this->parent->suspend();

    const auto listing = this->readAll(*this->parent);
    EXPECT_EQ(listing.result, Result::noMoreItems);
    EXPECT_EQ(this->times(listing.names).size(), 101u);
    EXPECT_EQ(listing.names.size(), 101u);
}

TYPED_TEST(CatalogSubfolderContractTest, GoesOnInAFolderThatWasRenamedWhileItWasSuspended)
{
    this->addEntries("folder", 100);
    typename TestFixture::Listing listing;
    this->read(*this->parent, listing);
    this->parent->suspend();
    this->folders.move("folder", "renamed");
    while (this->read(*this->parent, listing)) { }

    EXPECT_EQ(listing.result, Result::noMoreItems);
    EXPECT_EQ(this->times(listing.names).size(), 101u);
}

TYPED_TEST(CatalogSubfolderContractTest, SaysThatAFolderWentWhileItWasSuspended)
{
    this->addEntries("folder", 100);
    typename TestFixture::Listing listing;
    this->read(*this->parent, listing);
    this->parent->suspend();
    this->folders.remove("folder");

    EXPECT_FALSE(this->read(*this->parent, listing));
    EXPECT_EQ(listing.result, Result::notFound);
    EXPECT_EQ(listing.batches.back(), 0u);
}

TYPED_TEST(CatalogSubfolderContractTest, LeavesOutWhatIsRemovedWhileItIsSuspended)
{
    this->addEntries("folder", 60);
    typename TestFixture::Listing listing;
    this->read(*this->parent, listing);
    const auto before = this->times(listing.names);
    this->parent->suspend();
    std::size_t removed = 0;
    for (int number = 0; number < 60; ++number) {
        const auto name = "entry " + std::to_string(number);
        if (before.contains(name) || ++removed > 10)
            continue;
        this->folders.removeEntry("folder", name);
    }
    while (this->read(*this->parent, listing)) { }

    EXPECT_EQ(listing.names.size(), 61u - 10);
}

TYPED_TEST(CatalogSubfolderContractTest, GoesOnLeavingOutKnownEntriesAfterASuspension)
{
    this->addEntries("folder", 100);
    KnownNames known;
    for (int number = 0; number < 100; number += 2)
        known.names.insert("entry " + std::to_string(number));
    this->parent->setKnownEntries(&known);
    typename TestFixture::Listing listing;
    while (this->read(*this->parent, listing))
        this->parent->suspend();

    EXPECT_EQ(listing.names.size(), 51u);
}

} // namespace

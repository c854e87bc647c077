// SPDX-License-Identifier: MIT
#include "tests/support/CatalogContractFixture.h"
#include "tests/support/FakeFolders.h"
#include "tests/support/KnownNames.h"
#include "tests/support/RealFolders.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <set>
#include <type_traits>

namespace {

using Result = zef::FileError;

constexpr std::size_t batchSize = 40;

template <typename Folders> class CatalogContractTest : public CatalogContractFixture<Folders> {
};

using BothFolders = testing::Types<RealFolders, FakeFolders>;

struct FoldersName {
    template <typename Folders> static std::string GetName(int)
    {
        return std::is_same_v<Folders, RealFolders> ? "Real" : "Fake";
    }
};

TYPED_TEST_SUITE(CatalogContractTest, BothFolders, FoldersName);

TYPED_TEST(CatalogContractTest, SaysOfAnEmptyFolderThatThereAreNoMoreItems)
{
    this->folders.addFolder("folder");

    const auto listing = this->readAll(*this->opened("folder"));

    EXPECT_EQ(listing.result, Result::noMoreItems);
    EXPECT_EQ(listing.batches, std::vector<std::size_t>{ 0 });
}

TYPED_TEST(CatalogContractTest, GivesEachEntryOnceInFullBatches)
{
    for (const std::size_t total : { 1u, 39u, 40u, 41u, 80u, 1000u }) {
        const auto name = "folder of " + std::to_string(total);
        this->folders.addFolder(name);
        this->addEntries(name, total);

        const auto listing = this->readAll(*this->opened(name));

        EXPECT_EQ(listing.result, Result::noMoreItems);
        EXPECT_EQ(listing.names.size(), total);
        const std::set<std::string> different(listing.names.begin(), listing.names.end());
        EXPECT_EQ(different.size(), total);
        EXPECT_EQ(listing.batches.size(), total / batchSize + 1);
        for (std::size_t index = 0; index + 1 < listing.batches.size(); ++index)
            EXPECT_EQ(listing.batches[index], batchSize);
    }
}

TYPED_TEST(CatalogContractTest, GivesAsManyAsThereIsRoomFor)
{
    this->folders.addFolder("folder");
    this->addEntries("folder", 3);
    auto iterator = this->opened("folder");
    std::array<zef::CatalogEntry, 1> one;
    std::size_t count = 0;

    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(iterator->next(one, count), Result::none);
        EXPECT_EQ(count, 1u);
    }
    EXPECT_EQ(iterator->next(one, count), Result::noMoreItems);
    EXPECT_EQ(count, 0u);
}

TYPED_TEST(CatalogContractTest, KeepsSayingThatThereAreNoMoreItems)
{
    this->folders.addFolder("folder");
    this->folders.addEntry("folder", "file");
    auto iterator = this->opened("folder");
    this->readAll(*iterator);

    const auto listing = this->readAll(*iterator);

    EXPECT_EQ(listing.result, Result::noMoreItems);
    EXPECT_TRUE(listing.names.empty());
}

TYPED_TEST(CatalogContractTest, DescribesEachEntry)
{
    this->folders.addFolder("folder");
    this->folders.addEntry("folder", "file");
    this->folders.addFolderEntry("folder", "subfolder");

    this->readAll(*this->opened("folder"));

    for (const auto* name : { "file", "subfolder" }) {
        const auto& entry = this->entryNamed(name);
        const auto expected = this->folders.stat(std::string("folder/") + name);
        EXPECT_EQ(entry.stat.inode, expected.inode);
        EXPECT_EQ(entry.stat.device, expected.device);
        EXPECT_EQ(entry.stat.mode, expected.mode);
        EXPECT_EQ(entry.stat.modificationTime.tv_nsec, expected.modificationTime.tv_nsec);
        EXPECT_EQ(entry.isFolder, expected.isFolder());
        EXPECT_TRUE(entry.ref.hasNumbersOf(expected));
        EXPECT_EQ(entry.ref.isFolder(), expected.isFolder());
        EXPECT_EQ(entry.ref.parentInode(), this->folders.stat("folder").inode);
    }
}

TYPED_TEST(CatalogContractTest, GivesNamesOfAnyBytesAsTheyAre)
{
    const std::vector<std::string> names{ "line\nbreak", "\xff\xfe", std::string(255, 'n') };
    this->folders.addFolder("folder");
    for (const auto& name : names)
        this->folders.addEntry("folder", name);

    EXPECT_EQ(this->readAll(*this->opened("folder")).names,
        (std::vector<std::string>{ names[0], names[2], names[1] }));
}

TYPED_TEST(CatalogContractTest, TellsAtTheFirstReadThatAFolderMayNotBeRead)
{
    this->folders.addFolder("folder");
    this->folders.addEntry("folder", "file");
    this->folders.forbidReading("folder");
    const WithoutPrivileges plain;

    const auto listing = this->readAll(*this->opened("folder"));

    EXPECT_EQ(listing.result, Result::accessDenied);
    EXPECT_TRUE(listing.names.empty());
}

TYPED_TEST(CatalogContractTest, CountsNothingInAFolderThatMayNotBeRead)
{
    this->folders.addFolder("folder");
    this->folders.addEntry("folder", "file");
    this->folders.forbidReading("folder");
    const zef::FSRef ref(this->folders.stat("folder"));
    const WithoutPrivileges plain;

    EXPECT_EQ(this->folders.service().countEntries(&ref, this->folders.url("folder")).error(),
        Result::accessDenied);
}

TYPED_TEST(CatalogContractTest, OpensNothingWithoutAReference)
{
    this->folders.addFolder("folder");
    const zef::FSRef empty;
    const auto url = this->folders.url("folder");
    for (const auto* ref : std::initializer_list<const zef::FSRef*>{ nullptr, &empty }) {
        EXPECT_EQ(this->folders.service().openIterator(ref, url).error(), Result::badReference);
        EXPECT_EQ(this->folders.service().countEntries(ref, url).error(), Result::badReference);
    }
}

TYPED_TEST(CatalogContractTest, SaysThatAFileOrALinkIsNoFolder)
{
    this->folders.addFile("file");
    this->folders.addFolder("folder");
    this->folders.addLink("link", "folder");
    for (const auto* name : { "file", "link" }) {
        const zef::FSRef ref(this->folders.stat(name));

        EXPECT_EQ(this->open(name).error(), Result::notAFolder);
        EXPECT_EQ(this->folders.service().countEntries(&ref, this->folders.url(name)).error(),
            Result::notAFolder);
    }
}

TYPED_TEST(CatalogContractTest, SaysThatAFolderIsGone)
{
    this->folders.addFolder("folder");
    const zef::FSRef ref(this->folders.stat("folder"));
    this->folders.remove("folder");
    const auto url = this->folders.url("folder");

    EXPECT_EQ(this->folders.service().openIterator(&ref, url).error(), Result::notFound);
    EXPECT_EQ(this->folders.service().countEntries(&ref, url).error(), Result::notFound);
}

TYPED_TEST(CatalogContractTest, FindsAFolderAgainThatWasMoved)
{
    this->folders.addFolder("folder");
    this->folders.addEntry("folder", "file");
    const zef::FSRef ref(this->folders.stat("folder"));
    const auto url = this->folders.url("folder");
    this->folders.move("folder", "renamed");
    // Another folder in its place is not the one that is meant.
    this->folders.addFolder("folder");

    const auto iterator = this->folders.service().openIterator(&ref, url);
    ASSERT_TRUE(iterator);
    EXPECT_EQ(this->readAll(**iterator).names, std::vector<std::string>{ "file" });
    const auto count = this->folders.service().countEntries(&ref, url);
    ASSERT_TRUE(count);
    EXPECT_EQ(*count, 1u);
}

TYPED_TEST(CatalogContractTest, SaysThatAFolderWasRemovedWhileItWasRead)
{
    this->folders.addFolder("folder");
    this->addEntries("folder", 1000);
    auto iterator = this->opened("folder");
    typename TestFixture::Listing listing;
    ASSERT_TRUE(this->read(*iterator, listing));

    this->folders.remove("folder");

    EXPECT_EQ(this->readAll(*iterator).result, Result::notFound);
    EXPECT_EQ(listing.names.size(), batchSize);
}

TYPED_TEST(CatalogContractTest, SaysThatAFolderWasRemovedBeforeTheFirstRead)
{
    this->folders.addFolder("folder");
    auto iterator = this->opened("folder");

    this->folders.remove("folder");

    EXPECT_EQ(this->readAll(*iterator).result, Result::notFound);
}

TYPED_TEST(CatalogContractTest, LeavesOutWhatIsRemovedBeforeItIsRead)
{
    this->folders.addFolder("folder");
    this->addEntries("folder", 100);
    auto iterator = this->opened("folder");
    typename TestFixture::Listing listing;
    ASSERT_TRUE(this->read(*iterator, listing));
    std::set<std::string> left;
    for (int index = 0; index < 100; ++index)
        left.insert("entry " + std::to_string(index));
    for (const auto& name : listing.names)
        left.erase(name);
    const auto removed = *left.begin();

    this->folders.removeEntry("folder", removed);
    left.erase(removed);

    const auto rest = this->readAll(*iterator).names;
    EXPECT_EQ(std::set<std::string>(rest.begin(), rest.end()), left);
}

TYPED_TEST(CatalogContractTest, GivesEntriesThatStayExactlyOnceWhileOthersComeAndGo)
{
    this->folders.addFolder("folder");
    this->addEntries("folder", 300);
    auto iterator = this->opened("folder");
    typename TestFixture::Listing listing;
    int reads = 0;
    while (this->read(*iterator, listing)) {
        const auto name = std::to_string(++reads);
        this->folders.addEntry("folder", "new " + name);
        this->folders.removeEntry("folder", "new " + name);
        this->folders.addEntry("folder", "stays " + name);
    }

    std::map<std::string, int> times;
    for (const auto& name : listing.names)
        ++times[name];
    for (int index = 0; index < 300; ++index)
        EXPECT_EQ(times["entry " + std::to_string(index)], 1);
}

TYPED_TEST(CatalogContractTest, LeavesOutKnownEntriesAndFillsTheBatchesWithOthers)
{
    this->folders.addFolder("folder");
    this->addEntries("folder", 100);
    KnownNames known;
    for (int index = 0; index < 50; ++index)
        known.names.insert("entry " + std::to_string(index));
    auto iterator = this->opened("folder");
    iterator->setKnownEntries(&known);

    const auto listing = this->readAll(*iterator);

    EXPECT_EQ(listing.batches, (std::vector<std::size_t>{ 40, 10 }));
    for (const auto& name : listing.names)
        EXPECT_FALSE(known.names.contains(name));
    EXPECT_EQ(known.asked.size(), 100u);
    EXPECT_EQ(known.asked["entry 7"], this->folders.stat("folder/entry 7").inode);
}

TYPED_TEST(CatalogContractTest, GivesEverythingAgainWithoutKnownEntries)
{
    this->folders.addFolder("folder");
    this->addEntries("folder", 50);
    KnownNames known;
    auto iterator = this->opened("folder");
    iterator->setKnownEntries(&known);
    typename TestFixture::Listing listing;
    this->read(*iterator, listing);

    iterator->setKnownEntries(nullptr);

    EXPECT_EQ(this->readAll(*iterator).names.size(), 10u);
    EXPECT_EQ(known.asked.size(), 40u);
}

TYPED_TEST(CatalogContractTest, CountsTheEntries)
{
    this->folders.addFolder("folder");
    EXPECT_EQ(this->count("folder"), 0u);

    this->addEntries("folder", 41);
    this->folders.addFolderEntry("folder", ".hidden");
    EXPECT_EQ(this->count("folder"), 42u);

    this->folders.removeEntry("folder", "entry 1");
    EXPECT_EQ(this->count("folder"), 41u);
}

} // namespace

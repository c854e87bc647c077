// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Catalog.h"

#include "ZEFFilesystemTools/Platform/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator.h"

#include "tests/support/FakeCatalog.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace Result = zef::CatalogResult;

constexpr std::size_t batchSize = 40;

// Real folders, read through the system's service.
class RealFolders {
public:
    zef::Catalog& service() { return zef::Catalog::system(); }
    zef::FileURL url(std::string_view name) const { return _folder.folderUrl(name); }

    zef::Stat stat(std::string_view name) const
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(_folder.path(name).c_str(), stat);
        return stat;
    }

    void addFolder(std::string_view name) { _folder.makeFolder(name); }
    void addFile(std::string_view name) { _folder.write(name); }
    void addLink(std::string_view name, std::string_view target) { _folder.symlink(target, name); }
    void addEntry(const std::string& folder, const std::string& name)
    {
        _folder.write(folder + "/" + name);
    }
    void addFolderEntry(const std::string& folder, const std::string& name)
    {
        _folder.makeFolder(folder + "/" + name);
    }
    void removeEntry(const std::string& folder, const std::string& name)
    {
        _folder.remove(folder + "/" + name);
    }
    void move(std::string_view from, std::string_view to) { _folder.rename(from, to); }
    void remove(std::string_view name) { _folder.remove(name); }
    void forbidReading(std::string_view name) { _folder.chmod(name, 0300); }

private:
    TemporaryFolder _folder;
};

// The fake catalog, with a fake file system that makes up numbers.
class FakeFolders {
public:
    zef::Catalog& service() { return _catalog; }
    zef::FileURL url(std::string_view name) const
    {
        return zef::FileURL::fromPath(path(name), zef::URLKind::folder);
    }

    zef::Stat stat(std::string_view name)
    {
        zef::Stat stat;
        _files.statLink(path(name).c_str(), stat);
        return stat;
    }

    void addFolder(std::string_view name) { _catalog.add(url(name), _files.addFolder(path(name))); }
    void addFile(std::string_view name) { _catalog.add(url(name), _files.addFile(path(name))); }
    void addLink(std::string_view name, std::string_view target)
    {
        _catalog.add(url(name), _files.addLink(path(name), target));
    }
    void addEntry(const std::string& folder, const std::string& name)
    {
        _catalog.addEntry(url(folder), name, _files.addFile(path(folder + "/" + name)));
    }
    void addFolderEntry(const std::string& folder, const std::string& name)
    {
        _catalog.addEntry(url(folder), name, _files.addFolder(path(folder + "/" + name)));
    }
    void removeEntry(const std::string& folder, const std::string& name)
    {
        _catalog.removeEntry(url(folder), name);
        _files.remove(path(folder + "/" + name));
    }
    void move(std::string_view from, std::string_view to)
    {
        _catalog.move(url(from), url(to));
        _files.rename(path(from), path(to));
    }
    void remove(std::string_view name)
    {
        _catalog.remove(url(name));
        _files.remove(path(name));
    }
    void forbidReading(std::string_view name)
    {
        _catalog.setReadResult(url(name), Result::accessDenied);
    }

private:
    static std::string path(std::string_view name) { return "/" + std::string(name); }

    FakeFileSystem _files;
    FakeCatalog _catalog;
};

// Knows the names that a test gives it, and which entries it was asked about.
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

// What every catalog does, the real one and the fake.
template <typename Folders> class CatalogContractTest : public testing::Test {
protected:
    struct Listing {
        std::int16_t result = Result::noError;
        std::vector<std::string> names;
        std::vector<std::size_t> batches;
    };

    void addEntries(const std::string& folder, std::size_t count)
    {
        for (std::size_t index = 0; index < count; ++index)
            folders.addEntry(folder, "entry " + std::to_string(index));
    }

    std::int16_t open(std::string_view name, std::unique_ptr<zef::CatalogIterator>& iterator)
    {
        const zef::FSRef ref(folders.stat(name));
        return folders.service().openIterator(&ref, folders.url(name), iterator);
    }

    std::unique_ptr<zef::CatalogIterator> opened(std::string_view name)
    {
        std::unique_ptr<zef::CatalogIterator> iterator;
        EXPECT_EQ(open(name, iterator), Result::noError);
        EXPECT_TRUE(iterator);
        return iterator;
    }

    // One read; NO at the end and on an error, which `listing` then tells.
    bool read(zef::CatalogIterator& iterator, Listing& listing)
    {
        std::size_t count = 1000;
        listing.result = iterator.next(entries, count);
        listing.batches.push_back(count);
        for (std::size_t index = 0; index < count; ++index)
            listing.names.emplace_back(entries.at(index).name());
        return listing.result == Result::noError;
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
        std::size_t result = 77;
        EXPECT_EQ(folders.service().countEntries(&ref, folders.url(name), result), Result::noError);
        return result;
    }

    zef::CatalogEntry& entryNamed(std::string_view name)
    {
        return *std::find_if(entries.begin(), entries.end(),
            [name](const auto& entry) { return entry.name() == name; });
    }

    Folders folders;
    std::array<zef::CatalogEntry, batchSize> entries;
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
        EXPECT_EQ(iterator->next(one, count), Result::noError);
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
    std::size_t count = 77;

    EXPECT_EQ(this->folders.service().countEntries(&ref, this->folders.url("folder"), count),
        Result::accessDenied);
    EXPECT_EQ(count, 0u);
}

TYPED_TEST(CatalogContractTest, OpensNothingWithoutAReference)
{
    this->folders.addFolder("folder");
    const zef::FSRef empty;
    std::size_t count = 77;
    for (const auto* ref : std::initializer_list<const zef::FSRef*>{ nullptr, &empty }) {
        auto iterator = this->opened("folder");

        EXPECT_EQ(this->folders.service().openIterator(ref, this->folders.url("folder"), iterator),
            Result::badReference);
        EXPECT_FALSE(iterator);
        EXPECT_EQ(this->folders.service().countEntries(ref, this->folders.url("folder"), count),
            Result::badReference);
        EXPECT_EQ(count, 0u);
    }
}

TYPED_TEST(CatalogContractTest, SaysThatAFileOrALinkIsNoFolder)
{
    this->folders.addFile("file");
    this->folders.addFolder("folder");
    this->folders.addLink("link", "folder");
    for (const auto* name : { "file", "link" }) {
        std::unique_ptr<zef::CatalogIterator> iterator;
        const zef::FSRef ref(this->folders.stat(name));
        std::size_t count = 77;

        EXPECT_EQ(this->open(name, iterator), Result::notAFolder);
        EXPECT_FALSE(iterator);
        EXPECT_EQ(this->folders.service().countEntries(&ref, this->folders.url(name), count),
            Result::notAFolder);
        EXPECT_EQ(count, 0u);
    }
}

TYPED_TEST(CatalogContractTest, SaysThatAFolderIsGone)
{
    this->folders.addFolder("folder");
    const zef::FSRef ref(this->folders.stat("folder"));
    this->folders.remove("folder");
    std::unique_ptr<zef::CatalogIterator> iterator;
    std::size_t count = 77;

    EXPECT_EQ(this->folders.service().openIterator(&ref, this->folders.url("folder"), iterator),
        Result::notFound);
    EXPECT_FALSE(iterator);
    EXPECT_EQ(this->folders.service().countEntries(&ref, this->folders.url("folder"), count),
        Result::notFound);
    EXPECT_EQ(count, 0u);
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
    std::unique_ptr<zef::CatalogIterator> iterator;
    std::size_t count = 77;

    ASSERT_EQ(this->folders.service().openIterator(&ref, url, iterator), Result::noError);
    EXPECT_EQ(this->readAll(*iterator).names, std::vector<std::string>{ "file" });
    EXPECT_EQ(this->folders.service().countEntries(&ref, url, count), Result::noError);
    EXPECT_EQ(count, 1u);
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

// --- The real one alone -------------------------------------------------------------------------

class CatalogTest : public testing::Test {
protected:
    std::unique_ptr<zef::CatalogIterator> open(std::string_view name)
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), stat);
        const zef::FSRef ref(stat);
        std::unique_ptr<zef::CatalogIterator> iterator;
        zef::Catalog::system().openIterator(&ref, folder.folderUrl(name), iterator);
        return iterator;
    }

    TemporaryFolder folder;
    std::array<zef::CatalogEntry, batchSize> entries;
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
    ASSERT_EQ(iterator->next(entries, count), Result::noError);
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

// --- The fake alone -----------------------------------------------------------------------------

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
        std::unique_ptr<zef::CatalogIterator> iterator;
        EXPECT_EQ(catalog.openIterator(&ref, url, iterator), Result::noError);
        return iterator;
    }

    zef::FileURL url = zef::FileURL::fromPath("/folder", zef::URLKind::folder);
    zef::Stat stat;
    zef::Stat entryStat;
    FakeCatalog catalog;
    std::array<zef::CatalogEntry, batchSize> entries;
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
    auto iterator = std::unique_ptr<zef::CatalogIterator>();

    EXPECT_EQ(catalog.openIterator(&ref, url, iterator), Result::tooManyOpenFiles);
    EXPECT_FALSE(iterator);
    EXPECT_EQ(catalog.openCount(), 1u);
}

TEST_F(FakeCatalogTest, FailsToReadAfterTheEntriesThatTheTestSays)
{
    addEntries(100);
    catalog.setReadResult(url, Result::ioError, 50);
    auto iterator = open();

    EXPECT_EQ(iterator->next(entries, count), Result::noError);
    EXPECT_EQ(count, 40u);
    EXPECT_EQ(iterator->next(entries, count), Result::noError);
    EXPECT_EQ(count, 10u);
    EXPECT_EQ(iterator->next(entries, count), Result::ioError);
    EXPECT_EQ(count, 0u);
}

TEST_F(FakeCatalogTest, FailsToCountAsTheTestSays)
{
    addEntries(3);
    catalog.setCountResult(url, Result::ioError);
    const zef::FSRef ref(stat);
    count = 77;

    EXPECT_EQ(catalog.countEntries(&ref, url, count), Result::ioError);
    EXPECT_EQ(count, 0u);
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

    iterator->next(entries, count);
    EXPECT_EQ(iterator->next(entries, count), Result::noMoreItems);
    EXPECT_EQ(count, 9u);
    EXPECT_EQ(reads, (std::vector<std::size_t>{ 0, 1 }));
}

} // namespace

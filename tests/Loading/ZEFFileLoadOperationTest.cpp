// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/Gate.h"
#include "tests/support/LoadOperationFixture.h"
#include "tests/support/LockHolder.h"
#include "tests/support/SpyCatalog.h"
#include "tests/support/UnderscoreFilter.h"

#include <mutex>
#include <set>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using zef::makeRef;
using zef::Ref;

/// Lists a folder on the calling thread, and on a queue.
class ZEFFileLoadOperationTest : public LoadOperationFixture { };

TEST_F(ZEFFileLoadOperationTest, BeginsWithoutAFolderAndWithoutAFilter)
{
    auto fresh = makeRef<ZEFFileLoadOperation>();

    EXPECT_EQ(fresh->loadingDirectory(), nullptr);
    EXPECT_EQ(fresh->fileFilter(), nullptr);
    EXPECT_EQ(fresh->listingResult(), zef::FileError::none);
    EXPECT_TRUE(fresh->isKindOfClass(ZEFLoadingOperation::classObject));
}

TEST_F(ZEFFileLoadOperationTest, FindsEveryEntryButNothingBelow)
{
    folder.write("loaded/a");
    folder.write("loaded/.hidden");
    folder.symlink("nowhere", "loaded/link");
    folder.makeFolder("loaded/sub");
    folder.write("loaded/sub/deep");

    EXPECT_THAT(run(), UnorderedElementsAre("a", ".hidden", "link", "sub"));
    EXPECT_TRUE(load->isFinished());
}

TEST_F(ZEFFileLoadOperationTest, FindsNothingInAnEmptyFolderAndLogsNothing)
{
    EXPECT_THAT(run(), IsEmpty());
}

TEST_F(ZEFFileLoadOperationTest, FindsManyFilesEachOnceInTheOrderOfTheCatalog)
{
    writeFiles(200);
    zef::FSRef ref(stat("loaded"));
    const auto iterator = zef::Catalog::shared().openIterator(&ref, loaded->url());
    ASSERT_TRUE(iterator);
    std::vector<zef::CatalogEntry> entries(200);
    std::size_t count = 0;
    EXPECT_EQ((*iterator)->next(entries, count), zef::FileError::none);
    Words expected;
    for (const auto& entry : entries)
        expected.emplace_back(entry.name());

    EXPECT_EQ(run(), expected);
}

TEST_F(ZEFFileLoadOperationTest, MarksTheURLsOfFoldersAlone)
{
    folder.write("loaded/a");
    folder.makeFolder("loaded/sub");
    folder.symlink("sub", "loaded/link");
    run();

    for (const auto& each : *load->loadingArray())
        EXPECT_EQ(each->url().hasDirectoryPath(), nameOf(*each) == "sub");
}

TEST_F(ZEFFileLoadOperationTest, FindsTheCanonicalItems)
{
    folder.write("loaded/a");
    auto known = item("loaded/a");
    run();

    EXPECT_EQ(load->loadingArray()->objectAtIndex(0), known.get());
}

TEST_F(ZEFFileLoadOperationTest, MakesItemsOfTheFoldersClass)
{
    folder.write("loaded/a");
    folder.makeFolder("plain");
    folder.write("plain/b");
    auto plain = makeRef<ZEFFileLoadOperation>();
    plain->setLoadingDirectory(ZEFFileItem::classObject.newFileItemForURL(folder.url("plain")));
    plain->start();
    run();

    const auto* made = load->loadingArray()->objectAtIndex(0);
    EXPECT_EQ(&made->objectClass(), &ReportingItem::classObject);
    const auto* plainMade = plain->loadingArray()->objectAtIndex(0);
    EXPECT_EQ(&plainMade->objectClass(), &ZEFFileItem::classObject);
}

TEST_F(ZEFFileLoadOperationTest, ListsTheFolderWhereItIsNow)
{
    folder.write("loaded/a");
    folder.rename("loaded", "new");

    EXPECT_THAT(run(), ElementsAre("a"));
    EXPECT_EQ(load->loadingArray()->objectAtIndex(0)->url(), folder.url("new/a"));
}

TEST_F(ZEFFileLoadOperationTest, GivesEachItemWhatFindsItAgain)
{
    folder.write("loaded/a");
    run();
    auto* found = load->loadingArray()->objectAtIndex(0);
    ASSERT_TRUE(found->refValid());
    folder.rename("loaded/a", "loaded/b");

    EXPECT_EQ(found->currentURL(), folder.url("loaded/b"));
}

TEST_F(ZEFFileLoadOperationTest, TellsWhereItSawAnItemThatWasMadeElsewhere)
{
    folder.write("a");
    auto known = item("a");
    folder.rename("a", "loaded/b");
    folder.write("loaded/c");
    auto unmoved = item("loaded/c");
    run();

    const auto sightings = load->takeSightings();
    ASSERT_THAT(sightings, SizeIs(1));
    EXPECT_EQ(sightings[0].item, known);
    EXPECT_EQ(sightings[0].url, folder.url("loaded/b"));
    EXPECT_THAT(load->takeSightings(), IsEmpty());
}

TEST_F(ZEFFileLoadOperationTest, DeliversWhatItsFilterTakes)
{
    folder.write("loaded/_a");
    folder.write("loaded/b");
    auto filter = makeRef<UnderscoreFilter>();
    load->setFileFilter(filter);

    EXPECT_THAT(run(), ElementsAre("b"));
    EXPECT_THAT(filter->asked, UnorderedElementsAre("_a", "b"));
}

TEST_F(ZEFFileLoadOperationTest, KeepsNoItemThatItsFilterRejects)
{
    const int before = ReportingItem::liveCount;
    folder.write("loaded/_a");
    load->setFileFilter(makeRef<UnderscoreFilter>());
    run();

    EXPECT_EQ(ReportingItem::liveCount, before);
}

TEST_F(ZEFFileLoadOperationTest, ReadsFortyEntriesAtATime)
{
    SpyCatalog catalog;
    writeFiles(100);
    std::vector<std::size_t> counts;
    catalog.beforeBatch = [&] { counts.push_back(load->loadingArray()->count()); };
    run();

    EXPECT_THAT(counts, ElementsAre(0u, 40u, 80u));
    EXPECT_THAT(found(), SizeIs(100));
    EXPECT_EQ(catalog.iteratorCount, 0);
}

TEST_F(ZEFFileLoadOperationTest, LeavesOutWhatItsReaderKnows)
{
    class Known final : public zef::KnownEntries {
    public:
        bool isKnown(std::string_view name, std::uint64_t) override { return name == "b"; }
    };
    for (const auto* name : { "a", "b", "c" })
        folder.write(std::string("loaded/") + name);
    Known known;
    load->setKnownEntries(&known);

    EXPECT_THAT(run(), UnorderedElementsAre("a", "c"));
}

// --- On another thread

TEST_F(ZEFFileLoadOperationTest, LetsOthersTakeItemsOutUnderTheLockWhileItRuns)
{
    SpyCatalog catalog;
    Gate gate;
    catalog.beforeBatch = [&] { gate.pass(); };
    writeFiles(100);
    auto queue = makeRef<zef::OperationQueue>();
    queue->addOperation(load);
    std::set<Ref<ZEFFileItem>,
        decltype([](const auto& a, const auto& b) { return a.get() < b.get(); })>
        taken;
    const auto take = [&] {
        std::lock_guard lock(*load->loadingArrayLock());
        for (auto& each : load->loadingArray()->takeAllObjects())
            taken.insert(std::move(each));
    };
    gate.awaitArrival();
    gate.letOneThrough();
    gate.awaitArrival();
    take();
    EXPECT_THAT(taken, SizeIs(40));

    gate.open();
    queue->waitUntilAllOperationsAreFinished();
    take();
    EXPECT_THAT(taken, SizeIs(100));
}

TEST_F(ZEFFileLoadOperationTest, AppendsNothingWhileAnotherHasTheLock)
{
    writeFiles(3);
    auto queue = makeRef<zef::OperationQueue>();
    {
        std::lock_guard lock(*load->loadingArrayLock());
        queue->addOperation(load);
        EXPECT_THAT(found(), IsEmpty());
    }
    queue->waitUntilAllOperationsAreFinished();

    EXPECT_THAT(found(), SizeIs(3));
}

TEST_F(ZEFFileLoadOperationTest, FollowsAFolderThatItsOwnerFollowsAtTheSameTime)
{
    writeFiles(3);
    SpyCatalog catalog;
    Gate gate;
    catalog.beforeOpening = [&] { gate.pass(); };
    auto queue = makeRef<zef::OperationQueue>();
    folder.rename("loaded", "new");
    queue->addOperation(load);
    loaded->currentURL();
    gate.open();
    folder.rename("new", "newer");
    loaded->currentURL();
    queue->waitUntilAllOperationsAreFinished();
    log.clear(); // whether the last rename was seen in time

    EXPECT_EQ(loaded->url(), folder.folderUrl("newer"));
}

} // namespace

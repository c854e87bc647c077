// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "tests/support/FakeCatalog.h"
#include "tests/support/LoadOperationFixture.h"
#include "tests/support/SpyCatalog.h"
#include "tests/support/WithoutPrivileges.h"

#include <memory>
#include <optional>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::makeRef;
using zef::Ref;
using FileError = zef::FileError;

/// What a load makes of a folder that can't be listed, or not to its end.
class ZEFFileLoadOperationFailureTest : public LoadOperationFixture {
protected:
    static std::string openingFailed(int error, const std::string& url)
    {
        return "ZEFFileLoadOperation encountered error " + std::to_string(error)
            + " opening iterator to get the directory contents at " + url;
    }

    std::string readingFailed(int error) const
    {
        return "ZEFFileLoadOperation had error " + std::to_string(error)
            + " looping FSGetCatalogInfoBulk for directory " + loaded->url().absoluteString();
    }

    /// From now on the folder's entries are made up; each is told to be a file of its own.
    FakeCatalog& fake()
    {
        if (!_fake) {
            _fake.emplace();
            _fake->add(loaded->url(), stat("loaded"));
        }
        return *_fake;
    }

    void addEntry(std::string_view name)
    {
        zef::Stat made;
        made.mode = 0100644;
        made.device = 0xfefe;
        made.inode = ++_lastInode;
        fake().addEntry(loaded->url(), name, made);
    }

    void addEntries(std::size_t count)
    {
        for (std::size_t number = 0; number < count; ++number)
            addEntry(std::to_string(1000 + number).substr(1));
    }

private:
    std::optional<FakeCatalog> _fake;
    std::uint64_t _lastInode = 0;
};

// --- Opening

TEST_F(ZEFFileLoadOperationFailureTest, LogsWhyAFolderCantBeOpened)
{
    fake().setOpenResult(loaded->url(), FileError::io);

    EXPECT_THAT(run(), IsEmpty());

    EXPECT_THAT(takeLog(), ElementsAre(openingFailed(-36, loaded->url().absoluteString())));
    EXPECT_EQ(load->listingResult(), FileError::io);
    EXPECT_TRUE(load->isFinished());
}

TEST_F(ZEFFileLoadOperationFailureTest, LogsAFileThatIsNoFolder)
{
    const auto url = folder.write("file");
    load->setLoadingDirectory(item("file"));

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre(openingFailed(-1407, url.absoluteString())));
}

TEST_F(ZEFFileLoadOperationFailureTest, LogsALostFolder)
{
    folder.remove("loaded");

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre(openingFailed(-1401, "(null)")));
}

TEST_F(ZEFFileLoadOperationFailureTest, LogsAFolderThatGotLostSinceItWasOpened)
{
    folder.makeFolder("opened");
    folder.write("opened/file", "");
    const auto opened = item("opened");
    auto iterator = zef::Catalog::system().openIterator(opened->fsRef(), opened->url());
    ASSERT_TRUE(iterator);
    load->setOpenedIterator(*std::move(iterator));
    folder.remove("loaded");

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre(openingFailed(-1401, "(null)")));
}

TEST_F(ZEFFileLoadOperationFailureTest, LogsAMissingFolder)
{
    load->setLoadingDirectory(nullptr);

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre(openingFailed(-1401, "(null)")));
}

// --- Reading

TEST_F(ZEFFileLoadOperationFailureTest, EndsSilentlyWhenAccessIsDeniedAndKeepsWhatItHas)
{
    addEntries(100);
    fake().setReadResult(loaded->url(), FileError::accessDenied, 80);

    EXPECT_THAT(run(), SizeIs(80));
    EXPECT_EQ(load->listingResult(), FileError::accessDenied);
}

TEST_F(ZEFFileLoadOperationFailureTest, FindsNothingInAFolderThatMayNotBeReadAndLogsNothing)
{
    folder.write("loaded/a");
    folder.chmod("loaded", 0);
    const WithoutPrivileges user;

    EXPECT_THAT(run(), IsEmpty());
}

TEST_F(ZEFFileLoadOperationFailureTest, LogsAnotherFailureToReadAndKeepsWhatItHas)
{
    addEntries(100);
    fake().setReadResult(loaded->url(), FileError::notFound, 80);

    EXPECT_THAT(run(), SizeIs(80));
    EXPECT_THAT(takeLog(), ElementsAre(readingFailed(-43)));
    EXPECT_EQ(load->listingResult(), FileError::notFound);
}

TEST_F(ZEFFileLoadOperationFailureTest, ReportsAnErrorOfTheFirstReadToo)
{
    addEntries(3);
    fake().setReadResult(loaded->url(), FileError::io);

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre(readingFailed(-36)));
}

TEST_F(ZEFFileLoadOperationFailureTest, TakesTheLastBatchInFull)
{
    addEntries(41);

    EXPECT_THAT(run(), SizeIs(41));
    EXPECT_EQ(load->listingResult(), FileError::none);
}

TEST_F(ZEFFileLoadOperationFailureTest, EndsAtAReadThatFindsNothingMore)
{
    addEntries(80);

    EXPECT_THAT(run(), SizeIs(80));
}

// --- Entries

TEST_F(ZEFFileLoadOperationFailureTest, TurnsSlashesInNamesIntoColons)
{
    addEntry("a/b/");

    EXPECT_THAT(run(), ElementsAre("a:b:"));
    EXPECT_EQ(load->loadingArray()->objectAtIndex(0)->url(), folder.url("loaded/a:b:"));
}

TEST_F(ZEFFileLoadOperationFailureTest, SkipsEntriesThatMakeNoURLSilently)
{
    addEntry("a");
    addEntry("");
    addEntry("b");

    EXPECT_THAT(run(), ElementsAre("a", "b"));
}

TEST_F(ZEFFileLoadOperationFailureTest, SkipsEntriesThatMakeNoItemSilently)
{
    class Refuser final : public ZEFFileItem {
    public:
        using ZEFFileItem::ZEFFileItem;
        const ZEFFileItemClass& objectClass() const override { return refusers(); }

        static const ZEFFileItemClass& refusers()
        {
            static const ZEFFileItemClass object("Refuser", &ZEFFileItem::classObject, initialize);
            return object;
        }

        static Ref<ZEFFileItem> initialize(const zef::FileURL& url, const zef::FSRef* fsRef,
            const zef::FileURL& pathRep, const zef::Stat* statInfo)
        {
            if (url.name() == "refused")
                return nullptr;
            return makeRef<Refuser>(url, fsRef, pathRep, statInfo);
        }
    };
    load = nullptr;
    loaded = nullptr;
    folder.write("loaded/a");
    folder.write("loaded/refused");
    folder.write("loaded/z");
    load = makeRef<ZEFFileLoadOperation>();
    load->setLoadingDirectory(Refuser::refusers().newFileItemForURL(folder.url("loaded")));

    EXPECT_THAT(run(), testing::UnorderedElementsAre("a", "z"));
}

TEST_F(ZEFFileLoadOperationFailureTest, TakesNamesOfAnyBytes)
{
    folder.write("loaded/new\nline");
    folder.write("loaded/\xff\xfe");
    folder.write("loaded/" + std::string(255, 'n'));

    EXPECT_THAT(
        run(), testing::UnorderedElementsAre("new\nline", "\xff\xfe", std::string(255, 'n')));
}

// --- Cancelling

TEST_F(ZEFFileLoadOperationFailureTest, OpensNothingWhenItIsCancelledBeforehand)
{
    SpyCatalog catalog;
    folder.write("loaded/a");
    load->cancel();

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(catalog.openCount, 0);
    EXPECT_TRUE(load->isFinished());
}

TEST_F(ZEFFileLoadOperationFailureTest, OpensNothingWhenItIsCancelledWhileItLooksForItsFolder)
{
    class CancellingFileSystem final : public zef::FileSystem {
    public:
        explicit CancellingFileSystem(zef::Operation& operation)
            : _operation(operation)
        {
            replaceShared(this);
        }
        ~CancellingFileSystem() override { replaceShared(nullptr); }

        int statLink(const char* path, zef::Stat& stat) override
        {
            return system().statLink(path, stat);
        }
        bool exists(const char* path) override
        {
            _operation.cancel();
            return system().exists(path);
        }
        zef::FileHandle handle(const char* path) override { return system().handle(path); }

    private:
        zef::Operation& _operation;
    };
    SpyCatalog catalog;
    folder.write("loaded/a");
    const CancellingFileSystem fileSystem(*load);

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(catalog.openCount, 0);
}

TEST_F(ZEFFileLoadOperationFailureTest, KeepsEarlierBatchesAndDropsTheOneInWhichItIsCancelled)
{
    addEntries(200);
    fake().setReadHook([&](std::size_t reads) {
        if (reads == 2)
            load->cancel();
    });

    EXPECT_THAT(run(), SizeIs(80));
}

TEST_F(ZEFFileLoadOperationFailureTest, LogsNoErrorOfAReadInWhichItIsCancelled)
{
    addEntries(200);
    fake().setReadResult(loaded->url(), FileError::io, 40);
    fake().setReadHook([&](std::size_t reads) {
        if (reads == 1)
            load->cancel();
    });

    EXPECT_THAT(run(), SizeIs(40));
}

TEST_F(ZEFFileLoadOperationFailureTest, ClosesTheFolderHoweverItEnds)
{
    SpyCatalog catalog;
    writeFiles(50);
    int batches = 0;
    catalog.beforeBatch = [&] {
        EXPECT_EQ(catalog.iteratorCount, 1);
        if (++batches == 2)
            load->cancel();
    };
    run();

    EXPECT_EQ(catalog.iteratorCount, 0);
}

} // namespace

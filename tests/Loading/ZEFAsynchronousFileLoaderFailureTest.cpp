// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/AsynchronousLoaderFixture.h"
#include "tests/support/FakeCatalog.h"
#include "tests/support/LockHolder.h"
#include "tests/support/ZEFAsynchronousFileLoaderTestAccess.h"

#include <atomic>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using zef::FileError;
using zef::makeRef;
using zef::Ref;
using Access = ZEFAsynchronousFileLoaderTestAccess;

/// What a delegate hears of folders that a load can't list. The folders are those of a catalog that
/// the test decides; each of them is empty unless the test fills it.
class ZEFAsynchronousFileLoaderFailureTest : public AsynchronousLoaderFixture {
protected:
    ZEFAsynchronousFileLoaderFailureTest() { add("watched"); }

    /// The lines that were logged, which a load with failures leaves, are not looked at here.
    ~ZEFAsynchronousFileLoaderFailureTest() override { log.clear(); }

    void add(const std::string& name) { folders.add(folder.folderUrl(name), stat(name)); }

    /// An empty folder in a folder of the catalog.
    void makeFolder(const std::string& parent, const std::string& name)
    {
        const auto path = parent + "/" + name;
        folder.makeFolder(path);
        folders.addEntry(folder.folderUrl(parent), name, stat(path));
        add(path);
    }

    void failToOpen(const std::string& name, FileError error)
    {
        folders.setOpenResult(folder.folderUrl(name), error);
    }

    void failToRead(const std::string& name, FileError error)
    {
        folders.setReadResult(folder.folderUrl(name), error);
    }

    void walk() { loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), -1); }

    /// Makes "one" and "two", which can't be opened, walks to the end, and lets nothing be heard.
    void walkPastTwoFailures()
    {
        for (const auto* name : { "one", "two" }) {
            makeFolder("watched", name);
            failToOpen(std::string("watched/") + name, FileError::io);
        }
        walk();
        waitForLoads();
    }

    FakeCatalog folders;

private:
    zef::Stat stat(const std::string& name) const
    {
        zef::Stat result;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), result);
        return result;
    }
};

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsAFolderThatCannotBeOpened)
{
    failToOpen("watched", FileError::io);
    startWithWatched();
    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("0", "-36 at watched", "finished with 0"));
    EXPECT_TRUE(log.contains("encountered error -36 opening iterator"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsAFolderThatCannotBeRead)
{
    failToRead("watched", FileError::notFound);
    startWithWatched();
    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("0", "-43 at watched", "finished with 0"));
    EXPECT_TRUE(log.contains("had error -43 looping"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsDeniedAccessOfWhichTheLogSaysNothing)
{
    failToRead("watched", FileError::accessDenied);
    startWithWatched();
    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("0", "-5000 at watched", "finished with 0"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsFoldersAtEveryDepthOfAWalk)
{
    makeFolder("watched", "a");
    makeFolder("watched/a", "b");
    makeFolder("watched/a/b", "c");
    makeFolder("watched/a", "z");
    failToOpen("watched/a/b/c", FileError::tooManyOpenFiles);
    failToRead("watched/a/z", FileError::accessDenied);
    walk();
    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("5", "-42 at c", "-5000 at z", "finished with 5"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsALoadWithoutAFolder)
{
    loader->startWithDirectory(nullptr);
    finish();

    EXPECT_THAT(delegate->calls, SizeIs(3));
    EXPECT_TRUE(delegate->calls[1].ends_with(" at (null)"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsEachFolderOnceWhileTheWalkGoesOn)
{
    makeFolder("watched", "a");
    failToOpen("watched/a", FileError::io);
    Gate second;
    std::atomic<int> reads{ 0 };
    folders.setReadHook([&](std::size_t) {
        if (++reads == 2)
            second.pass();
    });
    folder.makeFolder("elsewhere/other");
    add("elsewhere");
    loader->startRecursivelyWithFilesToDepth(items({ "watched", "elsewhere" }).get(), -1);
    second.awaitArrival();
    tick();
    tick();
    EXPECT_THAT(delegate->calls, ElementsAre("1", "-36 at a", "1"));

    second.open();
    finish();
    EXPECT_THAT(delegate->calls, ElementsAre("1", "-36 at a", "1", "3", "finished with 3"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, WaitsForNobodyWhoHasTheLock)
{
    makeFolder("watched", "a");
    failToOpen("watched/a", FileError::io);
    Gate second;
    std::atomic<int> reads{ 0 };
    folders.setReadHook([&](std::size_t) {
        if (++reads == 2)
            second.pass();
    });
    add("elsewhere");
    loader->startRecursivelyWithFilesToDepth(items({ "watched", "elsewhere" }).get(), -1);
    second.awaitArrival();
    {
        const LockHolder holder(Access::lock(*loader));
        tick();
    }
    EXPECT_THAT(delegate->calls, IsEmpty());

    tick();
    EXPECT_THAT(delegate->calls, ElementsAre("1", "-36 at a"));
    second.open();
    finish();
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsAllBeforeTheEndAlsoWhileAnotherHasTheLock)
{
    walkPastTwoFailures();
    const LockHolder holder(Access::lock(*loader));
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("-36 at one", "-36 at two", "finished with 3"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, SendsNothingToADelegateWithoutTheProtocol)
{
    class Patient final : public ZEFObject, public ZEFAsynchronousFileLoaderDelegate {
    public:
        std::size_t count = 0;

        void asynchronousFileLoaderFinishedFindingFiles(
            ZEFAsynchronousFileLoader*, ZEFFileItemArray* files) override
        {
            count = files->count();
            files->removeAllObjects();
        }
    };
    const auto patient = makeRef<Patient>();
    loader = makeRef<ZEFAsynchronousFileLoader>(patient.get());
    walkPastTwoFailures();
    tick();

    EXPECT_EQ(patient->count, 3u);
    EXPECT_TRUE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReachesADelegateThatHasThisProtocolAlone)
{
    class Worried final : public ZEFObject, public ZEFAsynchronousFileLoaderFailureDelegate {
    public:
        std::vector<FileError> errors;

        void asynchronousFileLoaderFailedToListDirectory(
            ZEFAsynchronousFileLoader*, ZEFFileItem*, FileError error) override
        {
            errors.push_back(error);
        }
    };
    const auto worried = makeRef<Worried>();
    loader = makeRef<ZEFAsynchronousFileLoader>(worried.get());
    failToRead("watched", FileError::accessDenied);
    startWithWatched();
    finish();

    EXPECT_THAT(worried->errors, ElementsAre(FileError::accessDenied));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsNothingAfterACancellation)
{
    walkPastTwoFailures();
    loader->cancel();
    tick();

    EXPECT_THAT(delegate->calls, IsEmpty());
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsNothingAfterACancellationFromAProgressMessage)
{
    delegate->atProgress = [](ZEFAsynchronousFileLoader& told) { told.cancel(); };
    walkPastTwoFailures();
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("3"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsNoFurtherFolderAfterACancellationFromACall)
{
    delegate->atFailure = [](ZEFAsynchronousFileLoader& told) { told.cancel(); };
    walkPastTwoFailures();
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("3", "-36 at one"));
    EXPECT_FALSE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ACallMayDropTheLoader)
{
    const Ref<ZEFFileLoadOperation> operation(&Access::operation(*loader));
    delegate->atFailure = [&](ZEFAsynchronousFileLoader& told) {
        loader = nullptr;
        told.cancel();
    };
    walkPastTwoFailures();
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("3", "-36 at one"));
    EXPECT_EQ(operation->retainCount(), 1u);
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsTheRestAfterAnExceptionOfItsDelegate)
{
    delegate->atFailure = [this](ZEFAsynchronousFileLoader&) {
        delegate->atFailure = nullptr;
        throw std::runtime_error("no");
    };
    walkPastTwoFailures();
    EXPECT_THROW(tick(), std::runtime_error);
    tick();

    EXPECT_THAT(
        delegate->calls, ElementsAre("3", "-36 at one", "3", "-36 at two", "finished with 3"));
}

TEST_F(ZEFAsynchronousFileLoaderFailureTest, ReportsEachOnceAndInOrderWhenACallLooksAtTheLoad)
{
    delegate->atFailure = [this](ZEFAsynchronousFileLoader& told) {
        delegate->atFailure = nullptr;
        told.checkLoadStatus(nullptr);
    };
    walkPastTwoFailures();
    tick();

    EXPECT_THAT(
        delegate->calls, ElementsAre("3", "-36 at one", "3", "-36 at two", "finished with 3"));
}

} // namespace

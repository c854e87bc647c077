// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include "ZEFFilesystemTools/Loading/ZEFFilters.h"

#include "tests/support/AsynchronousLoaderFixture.h"
#include "tests/support/ZEFAsynchronousFileLoaderTestAccess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::makeRef;
using Access = ZEFAsynchronousFileLoaderTestAccess;

/// Takes no file.
class NoFileFilter final : public ZEFFileFilter {
public:
    bool shouldIncludeFile(ZEFFileItem*) const override { return false; }
};

/// A background load from its start to its end.
class ZEFAsynchronousFileLoaderTest : public AsynchronousLoaderFixture { };

// --- Before the start

TEST_F(ZEFAsynchronousFileLoaderTest, BeginsIdle)
{
    EXPECT_FALSE(loader->isLoading());
    EXPECT_FALSE(loader->isComplete());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_EQ(queue()->operationCount(), 0u);
}

TEST_F(ZEFAsynchronousFileLoaderTest, KnowsItsDelegateAndDoesNotRetainIt)
{
    EXPECT_EQ(loader->delegate(), delegate.get());
    EXPECT_EQ(delegate->retainCount(), 1u);
}

TEST_F(ZEFAsynchronousFileLoaderTest, BeginsWithTheFiltersOfAnOperation)
{
    EXPECT_EQ(loader->fileFilter(), nullptr);
    ASSERT_TRUE(loader->directoryFilter());
    EXPECT_EQ(&loader->directoryFilter()->objectClass(), &ZEFDirectoryFilter::classObject);
}

TEST_F(ZEFAsynchronousFileLoaderTest, PassesItsFiltersOnAndLetsGoOfThemInTheEnd)
{
    const auto fileFilter = ZEFFileFilter::filter();
    const auto directoryFilter = ZEFNormalDirectoryFilter::filter();

    loader->setFileFilter(fileFilter);
    loader->setDirectoryFilter(directoryFilter);

    EXPECT_EQ(loader->fileFilter(), fileFilter.get());
    EXPECT_EQ(loader->directoryFilter(), directoryFilter.get());
    EXPECT_EQ(Access::operation(*loader).fileFilter(), fileFilter.get());

    loader = nullptr;
    EXPECT_EQ(fileFilter->retainCount(), 1u);
    EXPECT_EQ(directoryFilter->retainCount(), 1u);
}

// --- A folder

TEST_F(ZEFAsynchronousFileLoaderTest, LoadsTheContentsOfAFolder)
{
    writeFiles(3);
    folder.makeFolder("watched/sub");
    folder.write("watched/sub/deep");
    startWithWatched();

    finish();

    ASSERT_THAT(delegate->files, SizeIs(1));
    EXPECT_THAT(names(delegate->files[0]), ElementsAre("000", "001", "002", "sub"));
}

TEST_F(ZEFAsynchronousFileLoaderTest, IsLoadingFromTheStartUntilItSawTheEnd)
{
    writeFiles(1);
    startWithWatched();
    EXPECT_TRUE(loader->isLoading());

    waitForLoads();
    EXPECT_TRUE(loader->isLoading());
    EXPECT_FALSE(loader->isComplete());

    tick();
    EXPECT_FALSE(loader->isLoading());
    EXPECT_TRUE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderTest, IsCompleteWhenItsDelegateIsTold)
{
    delegate->atEnd = [](ZEFAsynchronousFileLoader& told) {
        EXPECT_TRUE(told.isComplete());
        EXPECT_FALSE(told.isLoading());
    };
    startWithWatched();
    finish();

    EXPECT_THAT(delegate->files, SizeIs(1));
}

TEST_F(ZEFAsynchronousFileLoaderTest, TellsOfTheEndOnceAndThenItsTimerIsGone)
{
    startWithWatched();
    finish();

    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    tick();
    loader->checkLoadStatus(nullptr);
    EXPECT_THAT(delegate->files, SizeIs(1));
}

TEST_F(ZEFAsynchronousFileLoaderTest, CompletesAnEmptyFolderWithAnEmptyArray)
{
    startWithWatched();
    finish();

    ASSERT_THAT(delegate->files, SizeIs(1));
    EXPECT_TRUE(delegate->files[0]->isEmpty());
}

TEST_F(ZEFAsynchronousFileLoaderTest, CompletesAlsoWhenTheFolderCantBeListed)
{
    loader->startWithDirectory(nullptr);
    finish();

    ASSERT_THAT(delegate->files, SizeIs(1));
    EXPECT_TRUE(delegate->files[0]->isEmpty());
    EXPECT_TRUE(loader->isComplete());
    EXPECT_EQ(log.count("encountered error -1401 opening iterator"), 1u);
    log.clear();
}

TEST_F(ZEFAsynchronousFileLoaderTest, DeliversWhatItsFilterTakes)
{
    writeFiles(3);
    loader->setFileFilter(makeRef<NoFileFilter>());
    startWithWatched();
    finish();

    EXPECT_TRUE(delegate->files.at(0)->isEmpty());
}

// --- Files and what is beneath them

class RecursiveLoaderTest : public ZEFAsynchronousFileLoaderTest {
protected:
    RecursiveLoaderTest()
    {
        folder.write("watched/a");
        folder.makeFolder("watched/sub");
        folder.write("watched/sub/b");
        folder.makeFolder("watched/sub/deep");
        folder.write("watched/sub/deep/c");
    }

    Words found() const { return names(delegate->files.at(0)); }
};

TEST_F(RecursiveLoaderTest, LoadsEverythingBeneathTheFilesAndTheFilesThemselves)
{
    loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), -1);
    finish();

    EXPECT_THAT(found(), ElementsAre("a", "b", "c", "deep", "sub", "watched"));
}

TEST_F(RecursiveLoaderTest, GoesAsDeepAsItIsTold)
{
    loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), 2);
    finish();

    EXPECT_THAT(found(), ElementsAre("a", "b", "deep", "sub", "watched"));
}

TEST_F(RecursiveLoaderTest, AsksItsDirectoryFilterWhereToGo)
{
    loader->setDirectoryFilter(nullptr);
    loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), -1);
    finish();

    EXPECT_THAT(found(), ElementsAre("watched"));
}

TEST_F(RecursiveLoaderTest, DoesNotNoticeWhatHappensToTheArrayAfterwards)
{
    queue()->setSuspended(true);
    const auto files = items({ "watched/sub/deep" });
    loader->startRecursivelyWithFilesToDepth(files.get(), -1);
    files->removeAllObjects();
    queue()->setSuspended(false);
    finish();

    EXPECT_THAT(found(), ElementsAre("c", "deep"));
}

TEST_F(RecursiveLoaderTest, FindsNothingWithoutFiles)
{
    loader->startRecursivelyWithFilesToDepth(nullptr, -1);
    finish();

    EXPECT_THAT(found(), IsEmpty());
    EXPECT_TRUE(loader->isComplete());
}

// --- Starting

TEST_F(ZEFAsynchronousFileLoaderTest, IgnoresASecondStartWhileItIsLoading)
{
    writeFiles(1);
    folder.makeFolder("watched/sub");
    folder.write("watched/sub/deep");
    holdReaders();
    startWithWatched();
    gate.awaitArrival();

    startWithWatched();
    loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), -1);
    EXPECT_EQ(queue()->operationCount(), 1u);
    finish();

    EXPECT_THAT(delegate->files, SizeIs(1));
    EXPECT_THAT(names(delegate->files[0]), ElementsAre("000", "sub"));
    EXPECT_EQ(catalog.openCount, 1);
}

TEST_F(ZEFAsynchronousFileLoaderTest, IgnoresASecondStartThatIsOfTheOtherKind)
{
    writeFiles(1);
    queue()->setSuspended(true);
    loader->startRecursivelyWithFilesToDepth(items({ "watched/000" }).get(), -1);
    startWithWatched();
    queue()->setSuspended(false);
    finish();

    EXPECT_THAT(names(delegate->files.at(0)), ElementsAre("000"));
    EXPECT_EQ(catalog.openCount, 0);
}

TEST_F(ZEFAsynchronousFileLoaderTest, ServesOneLoad)
{
    startWithWatched();
    finish();

    startWithWatched();
    loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), -1);

    EXPECT_FALSE(loader->isLoading());
    EXPECT_TRUE(loader->isComplete());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_EQ(queue()->operationCount(), 0u);
}

TEST_F(ZEFAsynchronousFileLoaderTest, LoadsOnTheQueueOfTheFileManagerAtNormalPriority)
{
    queue()->setSuspended(true);
    startWithWatched();

    EXPECT_EQ(queue()->operationCount(), 1u);
    EXPECT_EQ(Access::operation(*loader).queuePriority(), zef::QueuePriority::normal);
    queue()->setSuspended(false);
}

TEST_F(ZEFAsynchronousFileLoaderTest, LooksTenTimesASecond)
{
    queue()->setSuspended(true);
    startWithWatched();
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.1);

    step(0.05);
    EXPECT_THAT(delegate->calls, IsEmpty());
    step(0.05);
    EXPECT_THAT(delegate->calls, SizeIs(1));
    EXPECT_DOUBLE_EQ(loop.secondsUntilNextTimer(), 0.1);
    queue()->setSuspended(false);
}

TEST_F(ZEFAsynchronousFileLoaderTest, HasOneTimerHoweverOftenItIsToldToStartIt)
{
    queue()->setSuspended(true);
    startWithWatched();
    loader->startTimer();
    tick();

    EXPECT_THAT(delegate->calls, SizeIs(1));
    queue()->setSuspended(false);
}

TEST_F(ZEFAsynchronousFileLoaderTest, WaitsWhileTheRunLoopIsInAnotherMode)
{
    startWithWatched();
    waitForLoads();
    loop.pushMode(zef::RunLoopMode::eventTracking);
    tick();
    EXPECT_THAT(delegate->calls, IsEmpty());

    loop.popMode();
    tick();
    EXPECT_TRUE(loader->isComplete());
}

} // namespace

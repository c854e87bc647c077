// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include "tests/support/AsynchronousLoaderFixture.h"
#include "tests/support/CountedObject.h"
#include "tests/support/ZEFAsynchronousFileLoaderTestAccess.h"

#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::SizeIs;
using zef::makeRef;
using zef::Ref;
using Access = ZEFAsynchronousFileLoaderTestAccess;

/// Hears only of the end.
class PatientDelegate final : public ZEFObject, public ZEFAsynchronousFileLoaderDelegate {
public:
    Ref<ZEFFileItemArray> files;

    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader*, ZEFFileItemArray* found) override
    {
        files = found;
    }
};

/// Whom a loader tells, how long it and what it found live, and many of them at once.
class ZEFAsynchronousFileLoaderLifeTest : public AsynchronousLoaderFixture { };

// --- Delegates

TEST_F(ZEFAsynchronousFileLoaderLifeTest, NeedsNoDelegate)
{
    loader = makeRef<ZEFAsynchronousFileLoader>(nullptr);
    EXPECT_EQ(loader->delegate(), nullptr);
    startWithWatched();
    finish();

    EXPECT_TRUE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, TellsNothingToADelegateThatHasNeitherProtocol)
{
    const auto stranger = makeRef<CountedObject>();
    loader = makeRef<ZEFAsynchronousFileLoader>(stranger.get());
    EXPECT_EQ(loader->delegate(), stranger.get());
    startWithWatched();
    finish();

    EXPECT_TRUE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, TellsADelegateWithoutTheProgressMessageOfTheEndAlone)
{
    writeFiles(2);
    const auto patient = makeRef<PatientDelegate>();
    loader = makeRef<ZEFAsynchronousFileLoader>(patient.get());
    holdReaders();
    startWithWatched();
    gate.awaitArrival();
    tick();
    EXPECT_FALSE(patient->files);

    finish();
    ASSERT_TRUE(patient->files);
    EXPECT_EQ(patient->files->count(), 2u);
    patient->files->removeAllObjects();
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, IsWholeAfterAnExceptionOfItsDelegate)
{
    delegate->atEnd = [](ZEFAsynchronousFileLoader&) { throw std::runtime_error("no"); };
    startWithWatched();
    waitForLoads();

    EXPECT_THROW(tick(), std::runtime_error);
    EXPECT_TRUE(loader->isComplete());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

// --- Lifetimes

TEST_F(ZEFAsynchronousFileLoaderLifeTest, StaysAliveUntilItIsDone)
{
    const auto filter = ZEFFileFilter::filter();
    loader->setFileFilter(filter);
    writeFiles(50);
    holdReaders();
    startWithWatched();
    gate.awaitArrival();
    loader = nullptr;
    tick();

    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("0", "50", "finished with 50"));
    EXPECT_EQ(filter->retainCount(), 1u);
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, LeavesItsLockAndItsArrayAliveForGood)
{
    writeFiles(1);
    const Ref<zef::Lock> lock(&Access::lock(*loader));
    startWithWatched();
    finish();
    loader = nullptr;

    EXPECT_EQ(lock->retainCount(), 2u);
    EXPECT_EQ(delegate->files.at(0)->retainCount(), 2u);
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, LeavesNothingWhenItWasNeverStarted)
{
    const Ref<zef::Lock> lock(&Access::lock(*loader));
    const Ref<ZEFFileItemArray> array(Access::operation(*loader).loadingArray());
    loader = nullptr;

    EXPECT_EQ(lock->retainCount(), 1u);
    EXPECT_EQ(array->retainCount(), 1u);
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, CancelsItsOperationWhenItsRunLoopEndsBeforeIt)
{
    Ref<ZEFFileLoadOperation> operation(&Access::operation(*loader));
    queue()->setSuspended(true);
    {
        zef::RunLoop other(clock);
        zef::RunLoop::replaceCurrent(&other);
        startWithWatched();
        loader = nullptr;
        EXPECT_FALSE(operation->isCancelled());
    }
    zef::RunLoop::replaceCurrent(&loop);

    EXPECT_TRUE(operation->isCancelled());
    queue()->setSuspended(false);
}

// --- Many, and none

TEST_F(ZEFAsynchronousFileLoaderLifeTest, LoadsSixtyFourFoldersAtOnce)
{
    constexpr std::size_t count = 64;
    writeFiles(50);
    holdReaders();
    std::vector<Ref<ZEFAsynchronousFileLoader>> loaders;
    for (std::size_t index = 0; index < count; ++index) {
        loaders.push_back(makeRef<ZEFAsynchronousFileLoader>(delegate.get()));
        loaders.back()->startWithDirectory(item("watched"));
    }
    for (std::size_t index = 0; index < count; ++index)
        gate.awaitArrival();
    startWithWatched(); // one too many: it waits
    tick();
    EXPECT_EQ(queue()->operationCount(), count + 1);
    delegate->calls.clear();

    finish();

    ASSERT_THAT(delegate->files, SizeIs(count + 1));
    for (const auto& files : delegate->files)
        EXPECT_EQ(files->count(), 50u);
    for (const auto& each : loaders)
        EXPECT_TRUE(each->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, CompletesWithNothingWhenTheManagerIsShutDownBeforeItsTurn)
{
    writeFiles(1);
    queue()->setSuspended(true);
    startWithWatched();
    ZEFFileManager::defaultFileManager()->shutdown();
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("0", "finished with 0"));
}

TEST_F(ZEFAsynchronousFileLoaderLifeTest, CompletesWithNothingAfterTheManagersShutdown)
{
    writeFiles(1);
    ZEFFileManager::defaultFileManager()->shutdown();
    startWithWatched();
    EXPECT_TRUE(loader->isLoading());
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("0", "finished with 0"));
    EXPECT_TRUE(loader->isComplete());
}

} // namespace

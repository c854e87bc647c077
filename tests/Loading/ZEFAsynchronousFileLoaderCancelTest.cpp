// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include "tests/support/AsynchronousLoaderFixture.h"
#include "tests/support/ZEFAsynchronousFileLoaderTestAccess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::makeRef;
using zef::Ref;
using Access = ZEFAsynchronousFileLoaderTestAccess;

/// A background load that is cancelled, by its owner or by its delegate.
class ZEFAsynchronousFileLoaderCancelTest : public AsynchronousLoaderFixture {
protected:
    /// Begins a load of 100 files, which has read 40 of them and comes to the gate.
    void loadOneBatch()
    {
        writeFiles(100);
        holdReaders();
        startWithWatched();
        gate.awaitArrival();
        gate.letOneThrough();
        gate.awaitArrival();
    }
};

TEST_F(ZEFAsynchronousFileLoaderCancelTest, DoesNothingBeforeTheStart)
{
    writeFiles(1);
    loader->cancel();
    EXPECT_FALSE(loader->isLoading());

    startWithWatched();
    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("1", "finished with 1"));
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, StopsTheTimerAtOnceAndTellsNobody)
{
    loadOneBatch();
    loader->cancel();

    EXPECT_FALSE(loader->isLoading());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    tick();
    finish();
    EXPECT_THAT(delegate->calls, IsEmpty());
    EXPECT_FALSE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, TellsNobodyAlsoWhenTheLoadHasEndedAlready)
{
    writeFiles(1);
    startWithWatched();
    waitForLoads();
    loader->cancel();
    tick();
    loader->checkLoadStatus(nullptr);

    EXPECT_THAT(delegate->files, IsEmpty());
    EXPECT_FALSE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, EndsTheLoadAtItsNextCheckAndKeepsWhatItHas)
{
    loadOneBatch();
    const Ref<ZEFFileItemArray> found(Access::operation(*loader).loadingArray());
    loader->cancel();
    finish();

    EXPECT_EQ(found->count(), 40u);
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, NeverBeginsALoadThatWaits)
{
    queue()->setSuspended(true);
    startWithWatched();
    loader->cancel();
    queue()->setSuspended(false);
    finish();

    EXPECT_EQ(catalog.openCount, 0);
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, EndsAWalk)
{
    writeFiles(100);
    holdReaders();
    loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), -1);
    const Ref<ZEFFileItemArray> found(Access::operation(*loader).loadingArray());
    gate.awaitArrival();
    gate.letOneThrough();
    gate.awaitArrival();
    loader->cancel();
    finish();

    EXPECT_EQ(found->count(), 40u);
    EXPECT_THAT(delegate->calls, IsEmpty());
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, MayComeTwice)
{
    loadOneBatch();
    loader->cancel();
    loader->cancel();
    finish();

    EXPECT_FALSE(loader->isLoading());
    EXPECT_FALSE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, ChangesNothingAfterTheEnd)
{
    startWithWatched();
    finish();
    loader->cancel();

    EXPECT_TRUE(loader->isComplete());
    EXPECT_FALSE(loader->isLoading());
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, IsFinal)
{
    queue()->setSuspended(true);
    startWithWatched();
    loader->cancel();
    startWithWatched();

    EXPECT_FALSE(loader->isLoading());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_EQ(queue()->operationCount(), 1u);
    queue()->setSuspended(false);
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, LetsGoOfTheLoader)
{
    loadOneBatch();
    auto* const borrowed = loader.get();
    const auto filter = ZEFFileFilter::filter();
    const Ref<ZEFFileLoadOperation> operation(&Access::operation(*loader));
    EXPECT_EQ(borrowed->retainCount(), 2u); // the timer's
    borrowed->cancel();

    EXPECT_EQ(borrowed->retainCount(), 1u);
    loader = nullptr;
    EXPECT_TRUE(operation->isCancelled());
}

// --- By the delegate

TEST_F(ZEFAsynchronousFileLoaderCancelTest, FromAProgressMessageIsTheEnd)
{
    writeFiles(3);
    delegate->atProgress = [](ZEFAsynchronousFileLoader& told) { told.cancel(); };
    startWithWatched();
    finish(); // the look at which it would have seen the end
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("3"));
    EXPECT_FALSE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, FromAProgressMessageMayDropTheLoader)
{
    loadOneBatch();
    const Ref<ZEFFileLoadOperation> operation(&Access::operation(*loader));
    delegate->atProgress = [&](ZEFAsynchronousFileLoader& told) {
        loader = nullptr;
        told.cancel();
    };
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("40"));
    EXPECT_TRUE(operation->isCancelled());
    finish();
    EXPECT_EQ(operation->retainCount(), 1u);
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, FromTheLastMessageChangesNothing)
{
    delegate->atEnd = [](ZEFAsynchronousFileLoader& told) { told.cancel(); };
    startWithWatched();
    finish();

    EXPECT_TRUE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, TheLastMessageMayDropTheLoader)
{
    const Ref<ZEFFileLoadOperation> operation(&Access::operation(*loader));
    delegate->atEnd = [&](ZEFAsynchronousFileLoader& told) {
        loader = nullptr;
        EXPECT_TRUE(told.isComplete());
    };
    startWithWatched();
    finish();

    EXPECT_THAT(delegate->files, SizeIs(1));
    EXPECT_EQ(operation->retainCount(), 1u);
}

TEST_F(ZEFAsynchronousFileLoaderCancelTest, TheLastMessageMayStartAnotherLoader)
{
    writeFiles(2);
    auto next = makeRef<ZEFAsynchronousFileLoader>(delegate.get());
    delegate->atEnd = [&](ZEFAsynchronousFileLoader& told) {
        if (&told == loader.get())
            next->startWithDirectory(item("watched"));
    };
    startWithWatched();
    finish();
    finish();

    EXPECT_TRUE(next->isComplete());
    EXPECT_THAT(delegate->files, SizeIs(2));
}

} // namespace

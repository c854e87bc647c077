// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include "tests/support/AsynchronousLoaderFixture.h"
#include "tests/support/LockHolder.h"
#include "tests/support/ZEFAsynchronousFileLoaderTestAccess.h"

#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::makeRef;
using zef::Ref;
using Access = ZEFAsynchronousFileLoaderTestAccess;

/// What a delegate hears while a load goes on. The load waits at the gate before each batch.
class ZEFAsynchronousFileLoaderProgressTest : public AsynchronousLoaderFixture {
protected:
    void begin(std::size_t count)
    {
        writeFiles(count);
        holdReaders();
        startWithWatched();
        gate.awaitArrival();
    }

    void loadBatch()
    {
        gate.letOneThrough();
        gate.awaitArrival();
    }
};

TEST_F(ZEFAsynchronousFileLoaderProgressTest, TellsHowManyFilesWereFoundSoFar)
{
    begin(100);
    loadBatch();
    tick();
    loadBatch();
    tick();
    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("40", "80", "100", "finished with 100"));
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, TellsTheFileThatWasFoundLast)
{
    begin(50);
    loadBatch();
    tick();
    const auto latest = delegate->latestFiles.at(0);
    finish();

    EXPECT_EQ(delegate->files.at(0)->objectAtIndex(39), latest.get());
    EXPECT_EQ(delegate->files.at(0)->objectAtIndex(49), delegate->latestFiles.at(1).get());
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, HasNoLatestFileWhileNothingWasFound)
{
    begin(1);
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("0"));
    EXPECT_THAT(delegate->latestFiles, ElementsAre(nullptr));
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, TellsItAlsoWhenNothingHasChanged)
{
    begin(50);
    loadBatch();
    tick();
    tick();
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("40", "40", "40"));
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, TellsTheFinalCountJustBeforeTheEnd)
{
    begin(3);
    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("3", "finished with 3"));
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, TellsNothingWhileAnotherHasTheLock)
{
    begin(50);
    loadBatch();
    {
        const LockHolder holder(Access::lock(*loader));
        tick();
    }
    EXPECT_THAT(delegate->calls, IsEmpty());

    tick();
    EXPECT_THAT(delegate->calls, ElementsAre("40"));
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, TellsOfTheEndAlsoWhileAnotherHasTheLock)
{
    writeFiles(3);
    startWithWatched();
    waitForLoads();
    const LockHolder holder(Access::lock(*loader));
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("finished with 3"));
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, HasGivenBackTheLockWhenItTells)
{
    bool wasFree = false;
    delegate->atProgress = [&](ZEFAsynchronousFileLoader& told) {
        wasFree = Access::lock(told).tryLock();
        if (wasFree)
            Access::lock(told).unlock();
    };
    begin(1);
    tick();

    EXPECT_TRUE(wasFree);
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, GoesOnAfterAnExceptionOfItsDelegate)
{
    delegate->atProgress = [](ZEFAsynchronousFileLoader&) { throw std::runtime_error("no"); };
    begin(3);
    EXPECT_THROW(tick(), std::runtime_error);

    delegate->atProgress = nullptr;
    finish();
    EXPECT_THAT(delegate->calls, ElementsAre("0", "3", "finished with 3"));
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, ReachesADelegateThatDoesNotWantToHearOfTheEnd)
{
    class Curious final : public ZEFObject, public ZEFAsynchronousFileLoaderProgressDelegate {
    public:
        std::vector<std::uint32_t> counts;

        void asynchronousFileLoaderUpdatedNumberOfFilesFound(
            ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem*) override
        {
            counts.push_back(count);
        }
    };
    const auto curious = makeRef<Curious>();
    loader = makeRef<ZEFAsynchronousFileLoader>(curious.get());
    begin(2);
    finish();

    EXPECT_THAT(curious->counts, ElementsAre(2u));
    EXPECT_TRUE(loader->isComplete());
}

TEST_F(ZEFAsynchronousFileLoaderProgressTest, LooksAtAWalkAlsoWhileItAddsFiles)
{
    for (int number = 0; number < 20; ++number) {
        const auto name = "sub" + std::to_string(number);
        folder.makeFolder("watched/" + name);
        writeFiles(100, "watched/" + name);
    }
    loader->startRecursivelyWithFilesToDepth(items({ "watched" }).get(), -1);
    while (!Access::operation(*loader).isFinished())
        tick();
    tick();

    EXPECT_EQ(delegate->calls.back(), "finished with 2021");
    ASSERT_THAT(delegate->files, SizeIs(1));
}

} // namespace

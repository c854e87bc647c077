// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

class ZEFFileItemKernelQueueTest : public FakeFileItemFixture {
protected:
    ZEFFileItemKernelQueueTest()
    {
        files.addFile("/file");
        file = item("/file");
    }

    ZEFFileChanges changes() { return file->changesForObserver(observer.get()); }
    ZEFFileChanges changesForOther() { return file->changesForObserver(other.get()); }

    // Something happens to the file that no time stamp shows.
    void happen() { notifier.fire(file->fileDeviceNumber(), file->fileiNode()); }

    zef::Ref<ZEFFileItem> file;
};

// --- Beginning and end ---------------------------------------------------------------------------

TEST_F(ZEFFileItemKernelQueueTest, IsUnusedAtFirst)
{
    EXPECT_FALSE(file->usingKQueue());
    EXPECT_EQ(notifier.openTokenCount(), 0u);
    changes();
    EXPECT_EQ(notifier.pollCount(), 0u);
}

TEST_F(ZEFFileItemKernelQueueTest, WatchesTheFileUntilItEnds)
{
    file->initKQueue();
    EXPECT_TRUE(file->usingKQueue());
    EXPECT_EQ(notifier.openTokenCount(ref("/file")), 1u);

    file->endKQueue();
    EXPECT_FALSE(file->usingKQueue());
    EXPECT_EQ(notifier.openTokenCount(), 0u);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemKernelQueueTest, BeginsAnewWhenItIsInUse)
{
    file->initKQueue();
    file->initKQueue();

    EXPECT_TRUE(file->usingKQueue());
    EXPECT_EQ(notifier.openTokenCount(), 1u);
    file->endKQueue();
    EXPECT_EQ(notifier.openTokenCount(), 0u);
}

TEST_F(ZEFFileItemKernelQueueTest, EndsNothingThatHasNotBegun)
{
    file->endKQueue();
    file->initKQueue();
    file->endKQueue();
    const auto polls = notifier.pollCount();

    file->endKQueue();

    EXPECT_EQ(notifier.pollCount(), polls);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemKernelQueueTest, MayBeginAgainAfterItsEnd)
{
    file->initKQueue();
    file->endKQueue();
    file->initKQueue();
    EXPECT_EQ(changes(), unchanged);

    happen();

    EXPECT_EQ(changes(), changed);
}

// --- What it notices -----------------------------------------------------------------------------

TEST_F(ZEFFileItemKernelQueueTest, NoticesWhatNoTimeStampShows)
{
    file->initKQueue();
    EXPECT_EQ(changes(), unchanged);
    happen();

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, NoticesNothingOfTheKindWhileItIsUnused)
{
    EXPECT_EQ(changes(), unchanged);
    happen();

    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, GoesByEventsAloneWhileItIsInUse)
{
    file->initKQueue();
    EXPECT_EQ(changes(), unchanged);
    files.write("/file");

    EXPECT_EQ(changes(), unchanged);
    happen();
    EXPECT_EQ(changes(), changed);
}

TEST_F(ZEFFileItemKernelQueueTest, TellsEachObserverOfAnEvent)
{
    file->initKQueue();
    file->registerFileObserver(observer.get());
    file->registerFileObserver(other.get());
    happen();

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changesForOther(), changed);
    EXPECT_EQ(changes(), unchanged);
    EXPECT_EQ(changesForOther(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, GivesARegisteredObserverNoEventFromBeforeIt)
{
    file->initKQueue();
    changes();
    clock.advance(1);
    happen();
    EXPECT_EQ(changes(), changed);

    file->registerFileObserver(other.get());

    EXPECT_EQ(changesForOther(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, GivesANewObserverNoEventFromBeforeIt)
{
    file->initKQueue();
    changes();
    clock.advance(1);
    happen();
    EXPECT_EQ(changes(), changed);

    EXPECT_EQ(changesForOther(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, TellsEventsWhileTheClockStandsStill)
{
    file->initKQueue();
    changes();
    for (int index = 0; index < 3; ++index) {
        happen();
        EXPECT_EQ(changes(), changed);
        EXPECT_EQ(changes(), unchanged);
    }
}

TEST_F(ZEFFileItemKernelQueueTest, TellsEventsAfterTheClockWasSetBack)
{
    file->initKQueue();
    changes();
    clock.advance(100);
    happen();
    EXPECT_EQ(changes(), changed);
    clock.setWallClock(zef::Date(1000));
    happen();

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changesForOther(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, TakesTheTimeStampsInWithAnEvent)
{
    file->initKQueue();
    changes();
    files.write("/file");
    happen();
    EXPECT_EQ(changes(), changed);

    file->endKQueue();

    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, FindsByTimeStampsAfterItsEndWhatItDidNotTell)
{
    file->initKQueue();
    changes();
    files.write("/file");
    EXPECT_EQ(changes(), unchanged);

    file->endKQueue();

    EXPECT_EQ(changes(), changed);
}

TEST_F(ZEFFileItemKernelQueueTest, GoesByTimeStampsWhenTheClockIsBeforeTheReferenceDate)
{
    clock.setWallClock(zef::Date(-1000));
    files.addFile("/early");
    file = item("/early");
    file->initKQueue();
    EXPECT_EQ(changes(), unchanged);

    files.write("/early");

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, ForgetsTheDateWithAnEvent)
{
    file->initKQueue();
    changes();
    file->modificationDate();
    happen();
    changes();

    EXPECT_EQ(file->currentModificationDate(), std::nullopt);
}

TEST_F(ZEFFileItemKernelQueueTest, TellsAModificationAlone)
{
    file->initKQueue();
    file->ZEF_modificationForObserver(observer.get());
    happen();

    EXPECT_EQ(file->ZEF_modificationForObserver(observer.get()), changed);
    EXPECT_EQ(changes(), unchanged);
}

// --- Moves and losses ----------------------------------------------------------------------------

TEST_F(ZEFFileItemKernelQueueTest, TellsAMoveAndCountsItsEventAsTold)
{
    file->initKQueue();
    changes();
    move("/file", "/renamed");
    happen();

    EXPECT_EQ(changes(), moved);
    EXPECT_EQ(changes(), unchanged);
    happen();
    EXPECT_EQ(changes(), changed);
}

TEST_F(ZEFFileItemKernelQueueTest, TellsALoss)
{
    file->initKQueue();
    changes();
    notifier.vanish(ref("/file"));
    files.remove("/file");

    EXPECT_EQ(changes(), lost);
    EXPECT_EQ(changes(), nothingToTell);
    EXPECT_TRUE(file->usingKQueue());
}

// --- Ending loses no event -----------------------------------------------------------------------

TEST_F(ZEFFileItemKernelQueueTest, TakesInWhatIsPendingWhenItEnds)
{
    file->initKQueue();
    changes();
    happen();

    file->endKQueue();
    file->initKQueue();

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemKernelQueueTest, LosesNoEventOfAnyObserverWhenItBeginsAnew)
{
    file->initKQueue();
    changes();
    changesForOther();
    happen();
    EXPECT_EQ(changes(), changed);

    file->initKQueue();

    EXPECT_EQ(changesForOther(), changed);
    EXPECT_EQ(changes(), unchanged);
}

} // namespace

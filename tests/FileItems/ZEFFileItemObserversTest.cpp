// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

class ZEFFileItemObserversTest : public FakeFileItemFixture {
protected:
    ZEFFileItemObserversTest()
    {
        files.addFolder("/folder");
        files.addFile("/file");
        file = item("/file");
    }

    ZEFFileChanges changes() { return file->changesForObserver(observer.get()); }
    ZEFFileChanges changesForOther() { return file->changesForObserver(other.get()); }

    void registerBoth()
    {
        file->registerFileObserver(observer.get());
        file->registerFileObserver(other.get());
    }

    zef::Ref<ZEFFileItem> file;
};

// --- Registering ---------------------------------------------------------------------------------

TEST_F(ZEFFileItemObserversTest, RegistersAnObserverOnce)
{
    EXPECT_TRUE(file->registerFileObserver(observer.get()));
    EXPECT_FALSE(file->registerFileObserver(observer.get()));
    EXPECT_TRUE(file->registerFileObserver(other.get()));
    EXPECT_FALSE(file->registerFileObserver(observer.get()));
}

TEST_F(ZEFFileItemObserversTest, CountsItselfAsRegistered)
{
    EXPECT_FALSE(file->registerFileObserver(file.get()));
}

TEST_F(ZEFFileItemObserversTest, RetainsNoObserver)
{
    registerBoth();

    EXPECT_EQ(observer->retainCount(), 1u);
}

TEST_F(ZEFFileItemObserversTest, RemovesAnObserverOnce)
{
    registerBoth();

    EXPECT_TRUE(file->removeFileObserver(observer.get()));
    EXPECT_FALSE(file->removeFileObserver(observer.get()));
    EXPECT_TRUE(file->removeFileObserver(other.get()));
}

TEST_F(ZEFFileItemObserversTest, RemovesNoObserverThatItDoesNotKnow)
{
    EXPECT_FALSE(file->removeFileObserver(observer.get()));
    EXPECT_FALSE(file->removeFileObserver(nullptr));
}

TEST_F(ZEFFileItemObserversTest, KeepsTheOthersWhenOneInTheMiddleIsRemoved)
{
    const auto last = zef::makeRef<Observer>();
    registerBoth();
    file->registerFileObserver(last.get());
    files.write("/file");

    file->removeFileObserver(other.get());

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(file->changesForObserver(last.get()), changed);
    EXPECT_FALSE(file->registerFileObserver(last.get()));
}

TEST_F(ZEFFileItemObserversTest, StartsAnewWithAnObserverThatComesBack)
{
    registerBoth();
    file->removeFileObserver(observer.get());
    files.write("/file");
    file->currentModificationDate();

    EXPECT_TRUE(file->registerFileObserver(observer.get()));
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemObserversTest, RegistersAnObserverWithItsFirstQuestion)
{
    EXPECT_EQ(changes(), unchanged);

    EXPECT_FALSE(file->registerFileObserver(observer.get()));
    EXPECT_TRUE(file->removeFileObserver(observer.get()));
}

TEST_F(ZEFFileItemObserversTest, StartsALateObserverFromWhatTheItemLastSaw)
{
    files.write("/file");
    EXPECT_EQ(changes(), changed); // since the item was made

    files.write("/file");
    file->currentModificationDate();
    EXPECT_EQ(changesForOther(), unchanged);
}

// --- What happened since the last question -------------------------------------------------------

TEST_F(ZEFFileItemObserversTest, TellsThatNothingHappened)
{
    EXPECT_EQ(changes(), unchanged);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemObserversTest, TellsAWriteOnce)
{
    changes();
    files.write("/file");

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemObserversTest, TellsAChangeOfTheStatusAlone)
{
    changes();
    auto stat = this->stat("/file");
    stat.statusChangeTime.tv_sec += 1;
    files.setStat("/file", stat);

    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemObserversTest, TellsTimeStampsThatWereSetBack)
{
    changes();
    auto stat = this->stat("/file");
    stat.modificationTime.tv_sec -= 100;
    files.setStat("/file", stat);

    EXPECT_EQ(changes(), changed);
}

TEST_F(ZEFFileItemObserversTest, TellsEachObserverByItself)
{
    registerBoth();
    files.write("/file");

    EXPECT_EQ(changes(), changed);
    files.write("/file");
    EXPECT_EQ(changesForOther(), changed);
    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changesForOther(), unchanged);
}

TEST_F(ZEFFileItemObserversTest, AsksTheDiskOnceForEachQuestion)
{
    registerBoth();
    const auto questions = files.statCount();

    changes();
    changesForOther();

    EXPECT_EQ(files.statCount(), questions + 2);
    EXPECT_EQ(files.existsCount(), 0u);
    EXPECT_EQ(files.handleCount(), 0u);
    EXPECT_EQ(locator.locateCount(), 0);
}

// --- Moves ---------------------------------------------------------------------------------------

TEST_F(ZEFFileItemObserversTest, TellsEachObserverOfARenameOnce)
{
    registerBoth();
    file->path();
    move("/file", "/renamed");

    EXPECT_EQ(changes(), moved);
    EXPECT_EQ(file->url(), url("/renamed"));
    EXPECT_EQ(*file->path(), "/renamed");
    EXPECT_EQ(changesForOther(), moved);
    EXPECT_FALSE(changes().pathChanged);
    EXPECT_FALSE(changesForOther().pathChanged);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemObserversTest, TellsEachObserverOfEachRenameThatItSees)
{
    registerBoth();
    move("/file", "/first");
    EXPECT_EQ(changes(), moved);
    move("/first", "/second");

    EXPECT_EQ(changes(), moved);
    EXPECT_EQ(changesForOther(), moved);
    EXPECT_FALSE(changesForOther().pathChanged);
}

TEST_F(ZEFFileItemObserversTest, LeavesTheTimeStampsToTheNextQuestionAfterAMove)
{
    changes();
    files.write("/file");
    move("/file", "/renamed");

    EXPECT_EQ(changes(), moved);
    EXPECT_EQ(changes(), changed);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemObserversTest, TellsAMoveWhenAnotherFileTakesThePlace)
{
    changes();
    move("/file", "/folder/file");
    files.addFile("/file");

    EXPECT_EQ(changes(), moved);
    EXPECT_EQ(file->url(), url("/folder/file"));
}

TEST_F(ZEFFileItemObserversTest, TellsAMoveWhenTheReferenceLeadsToThePathThatCantBeAsked)
{
    changes();
    locator.setPlace(ref("/file"), url("/file"));
    files.setError("/file", EACCES);

    EXPECT_EQ(changes(), moved);
    files.setError("/file", 0);
    EXPECT_EQ(changes(), unchanged);
}

TEST_F(ZEFFileItemObserversTest, KeepsItsPathForTheDateAfterAnObserverSawAMove)
{
    changes();
    move("/file", "/renamed");
    changes();
    files.write("/renamed");

    EXPECT_TRUE(file->currentModificationDate());
    EXPECT_TRUE(log.lines().empty());
}

// --- Losses --------------------------------------------------------------------------------------

TEST_F(ZEFFileItemObserversTest, TellsALossOnceAndThenNothingMore)
{
    changes();
    files.remove("/file");

    EXPECT_EQ(changes(), lost);
    EXPECT_FALSE(file->isValid());
    EXPECT_FALSE(file->url());
    EXPECT_EQ(changes(), nothingToTell);
    EXPECT_EQ(changes(), nothingToTell);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemObserversTest, TellsEachObserverOfALoss)
{
    registerBoth();
    files.remove("/file");

    EXPECT_EQ(changes(), lost);
    EXPECT_EQ(changesForOther(), lost);
    EXPECT_EQ(changesForOther(), nothingToTell);
}

TEST_F(ZEFFileItemObserversTest, TellsALossThatTheHostFoundFirst)
{
    changes();
    files.remove("/file");
    file->currentURL();

    EXPECT_EQ(changes(), lost);
    EXPECT_EQ(changes(), nothingToTell);
}

TEST_F(ZEFFileItemObserversTest, HasNothingToTellANewObserverOfALostFile)
{
    files.remove("/file");
    file->currentURL();

    EXPECT_EQ(changes(), nothingToTell);
    EXPECT_TRUE(file->registerFileObserver(other.get()));
    EXPECT_EQ(changesForOther(), nothingToTell);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemObserversTest, IsLostWithoutAReferenceWhenItsPathIsGone)
{
    file = nullptr;
    locator.setRefusesReferences(true);
    locator.setAnswer(url("/renamed"));
    file = item("/file");
    registerBoth();
    files.rename("/file", "/renamed");

    EXPECT_EQ(changes(), lost);
    EXPECT_FALSE(file->isValid());
    EXPECT_EQ(changesForOther(), lost);
}

TEST_F(ZEFFileItemObserversTest, TakesAYoungFileWithTheSameNumberForAnother)
{
    changes();
    files.remove("/file");
    files.setNextInode(file->fileiNode());
    files.addFile("/file");

    EXPECT_EQ(changes(), lost);
}

TEST_F(ZEFFileItemObserversTest, TakesAFileOfTheSameNumberOnAnotherDeviceForAnother)
{
    changes();
    auto stat = this->stat("/file");
    stat.device += 1;
    files.setStat("/file", stat);

    EXPECT_EQ(changes(), lost);
}

TEST_F(ZEFFileItemObserversTest, StaysLostWhenTheFileComesBack)
{
    registerBoth();
    hide("/file", "/hidden");
    EXPECT_EQ(changes(), lost);
    files.rename("/hidden", "/file");
    locator.setAnswer(url("/file"));

    EXPECT_EQ(changes(), nothingToTell);
    EXPECT_FALSE(file->isValid());
}

// An observer that asks for the first time after the file came back to its recorded path is told
// that it is there, by its own record; the item stays lost.
TEST_F(ZEFFileItemObserversTest, TellsAnotherObserverWhatItsOwnRecordSays)
{
    registerBoth();
    hide("/file", "/hidden");
    EXPECT_EQ(changes(), lost);
    files.rename("/hidden", "/file");

    EXPECT_TRUE(changesForOther().exists);
    EXPECT_FALSE(file->isValid());
}

// --- The question about modification alone -------------------------------------------------------

TEST_F(ZEFFileItemObserversTest, TellsAModificationAlone)
{
    EXPECT_EQ(file->ZEF_modificationForObserver(observer.get()), unchanged);
    const auto date = file->modificationDate();
    const auto stat = files.write("/file");
    file->currentModificationDate();

    EXPECT_EQ(file->ZEF_modificationForObserver(observer.get()), changed);
    EXPECT_EQ(file->ZEF_modificationForObserver(observer.get()), unchanged);
    EXPECT_NE(file->modificationDate(), date);
    EXPECT_GT(stat.modificationTime.tv_sec, 0);
}

TEST_F(ZEFFileItemObserversTest, LeavesAMoveToTheNextFullQuestion)
{
    changes();
    move("/file", "/renamed");

    EXPECT_EQ(file->ZEF_modificationForObserver(observer.get()), lost);
    EXPECT_EQ(file->url(), url("/file"));
    EXPECT_TRUE(file->isValid());
    EXPECT_EQ(changes(), moved);
}

TEST_F(ZEFFileItemObserversTest, HasNoModificationOfALostFile)
{
    changes();
    files.remove("/file");
    changes();

    EXPECT_EQ(file->ZEF_modificationForObserver(observer.get()), nothingToTell);
}

} // namespace

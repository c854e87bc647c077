// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>

namespace {

constexpr auto* noPathMessage = "Error, tried to statmoddate a null value";

class ZEFFileItemLocationTest : public FakeFileItemFixture {
protected:
    ZEFFileItemLocationTest()
    {
        files.addFolder("/folder");
        files.addFile("/file");
        file = item("/file");
    }

    zef::Ref<ZEFFileItem> file;
};

// --- Where the file is now -----------------------------------------------------------------------

TEST_F(ZEFFileItemLocationTest, KeepsItsURLWhileItsPathExists)
{
    EXPECT_EQ(file->currentURL(), url("/file"));
    EXPECT_EQ(files.existsCount(), 1u);
    EXPECT_EQ(locator.locateCount(), 0);
}

TEST_F(ZEFFileItemLocationTest, TrustsItsPathBeforeItsReference)
{
    locator.setPlace(ref("/file"), url("/folder"));

    EXPECT_EQ(file->currentURL(), url("/file"));
}

TEST_F(ZEFFileItemLocationTest, TrustsItsPathEvenWhenAnotherFileIsThere)
{
    move("/file", "/moved");
    files.addFile("/file");

    EXPECT_EQ(file->currentURL(), url("/file"));
}

TEST_F(ZEFFileItemLocationTest, FollowsARenamedFile)
{
    file->path();
    move("/file", "/renamed");

    EXPECT_EQ(file->currentURL(), url("/renamed"));
    EXPECT_EQ(file->url(), url("/renamed"));
    EXPECT_EQ(*file->path(), "/renamed");
    EXPECT_STREQ(file->filesystemRepresentation().get(), "/renamed");
    EXPECT_TRUE(file->isValid());
    EXPECT_TRUE(file->refValid());
}

TEST_F(ZEFFileItemLocationTest, FollowsAFileThatIsMovedAgainAndAgain)
{
    move("/file", "/folder/file");
    EXPECT_EQ(file->currentURL(), url("/folder/file"));

    move("/folder/file", "/folder/renamed");
    EXPECT_EQ(file->currentURL(), url("/folder/renamed"));

    move("/folder/renamed", "/file");
    EXPECT_EQ(file->currentURL(), url("/file"));
}

TEST_F(ZEFFileItemLocationTest, KeepsTheURLThatItsReferenceConfirms)
{
    files.addLink("/link", "/nowhere");
    const auto link = item("/link");
    locator.setPlace(ref("/link"), url("/link"));
    const auto* path = link->path();

    EXPECT_EQ(link->currentURL(), url("/link"));
    EXPECT_EQ(locator.locateCount(), 1);
    EXPECT_EQ(link->path(), path);
    EXPECT_TRUE(link->isValid());
}

TEST_F(ZEFFileItemLocationTest, LosesTheSlashThatItWasAskedForWithWhenItIsFoundAgain)
{
    file = nullptr;
    const auto byPath = ZEFFileItem::classObject.newFileItemForPath("/file");
    move("/file", "/renamed");

    EXPECT_EQ(byPath->currentURL(), url("/renamed"));
}

TEST_F(ZEFFileItemLocationTest, KeepsTheSlashOfAFolder)
{
    const auto folder = item("/folder");
    locator.setPlace(ref("/folder"), folderURL("/renamed"));
    files.rename("/folder", "/renamed");

    EXPECT_EQ(folder->currentURL(), folderURL("/renamed"));
    EXPECT_EQ(*folder->currentPath(), "/renamed");
}

TEST_F(ZEFFileItemLocationTest, IsLostWhenItsReferenceLeadsNowhere)
{
    file->path();
    files.remove("/file");

    EXPECT_FALSE(file->currentURL());
    EXPECT_FALSE(file->isValid());
    EXPECT_FALSE(file->url());
    EXPECT_FALSE(file->refValid());
    EXPECT_EQ(file->path(), nullptr);
}

TEST_F(ZEFFileItemLocationTest, IsLostForEver)
{
    hide("/file", "/hidden");
    file->currentURL();
    files.rename("/hidden", "/file");
    locator.setAnswer(url("/file"));
    const auto questions = locator.locateCount();

    EXPECT_FALSE(file->currentURL());
    EXPECT_FALSE(file->currentPath());
    EXPECT_FALSE(file->currentFilesystemRepresentation());
    EXPECT_FALSE(file->isValid());
    EXPECT_EQ(locator.locateCount(), questions);
}

TEST_F(ZEFFileItemLocationTest, IsLostWithoutAReferenceWhenItsPathIsGone)
{
    file = nullptr;
    locator.setRefusesReferences(true);
    const auto bare = item("/file");
    EXPECT_EQ(bare->currentURL(), url("/file"));
    locator.setAnswer(url("/renamed"));
    files.rename("/file", "/renamed");

    EXPECT_FALSE(bare->currentURL());
    EXPECT_FALSE(bare->isValid());
    EXPECT_FALSE(bare->url());
    EXPECT_EQ(locator.locateCount(), 0);
}

TEST_F(ZEFFileItemLocationTest, IsSilentAboutALostFile)
{
    files.remove("/file");
    file->currentURL();
    file->currentPath();
    file->currentModificationDate();

    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemLocationTest, AsksItsReferenceWhenItsPathIsTooLong)
{
    const auto longURL = url("/" + std::string(PATH_MAX, 'n'));
    locator.setPlace(ref("/file"), longURL);
    files.rename("/file", "/hidden");
    file->currentURL();

    EXPECT_EQ(file->currentURL(), longURL);
    EXPECT_EQ(locator.locateCount(), 2);
}

TEST_F(ZEFFileItemLocationTest, GivesTheCurrentPath)
{
    EXPECT_EQ(*file->currentPath(), "/file");
    move("/file", "/renamed");
    EXPECT_EQ(*file->currentPath(), "/renamed");
    files.remove("/renamed");
    locator.setPlace(file->fsRef() ? *file->fsRef() : zef::FSRef(), nullptr);
    EXPECT_FALSE(file->currentPath());
}

TEST_F(ZEFFileItemLocationTest, GivesTheCurrentRepresentationToFree)
{
    move("/file", "/renamed");

    char* bytes = file->currentFilesystemRepresentation().release();

    EXPECT_STREQ(bytes, "/renamed");
    std::free(bytes);
    EXPECT_STREQ(file->filesystemRepresentation().get(), "/renamed");
}

TEST_F(ZEFFileItemLocationTest, HasNoCurrentRepresentationOnceItIsLost)
{
    files.remove("/file");

    EXPECT_FALSE(file->currentFilesystemRepresentation());
    EXPECT_FALSE(file->filesystemRepresentation());
}

// --- Its path is made anew when it is used -------------------------------------------------------

TEST_F(ZEFFileItemLocationTest, GivesAnObserverThatComesAfterAMoveTheNewPath)
{
    move("/file", "/renamed");
    file->currentURL();

    EXPECT_EQ(file->changesForObserver(observer.get()), changed);
    EXPECT_EQ(file->changesForObserver(observer.get()), unchanged);
    EXPECT_TRUE(file->registerFileObserver(other.get()));
    EXPECT_TRUE(file->changesForObserver(other.get()).exists);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemLocationTest, TellsAnObserverOfAMoveThatTheHostFoundFirst)
{
    file->registerFileObserver(observer.get());
    move("/file", "/renamed");
    file->currentURL();

    EXPECT_EQ(file->changesForObserver(observer.get()), moved);
    EXPECT_TRUE(file->changesForObserver(observer.get()).exists);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemLocationTest, LooksForTheDateAtItsPathAsItStandsWithAMessage)
{
    const auto date = file->modificationDate();
    move("/file", "/renamed");
    file->currentURL();
    files.write("/renamed");

    EXPECT_EQ(file->currentModificationDate(), date);
    EXPECT_EQ(log.lines(), std::vector<std::string>{ noPathMessage });
}

TEST_F(ZEFFileItemLocationTest, FindsTheDateAgainOnceItsPathWasUsed)
{
    move("/file", "/renamed");
    file->currentURL();
    file->currentURL(); // makes the path anew
    const auto stat = files.write("/renamed");

    EXPECT_EQ(file->currentModificationDate()->secondsSince1970(),
        static_cast<double>(stat.modificationTime.tv_sec)
            + static_cast<double>(stat.modificationTime.tv_nsec) / 1e9);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemLocationTest, ForgetsThePathOfALinkThatLeadsNowhereWheneverItIsAsked)
{
    files.addLink("/link", "/nowhere");
    const auto link = item("/link");
    locator.setPlace(ref("/link"), url("/link"));
    link->currentURL();

    link->currentModificationDate();
    EXPECT_EQ(log.count(noPathMessage), 1u);
    EXPECT_TRUE(link->currentFilesystemRepresentation());
    link->currentModificationDate();
    EXPECT_EQ(log.count(noPathMessage), 1u);
}

// --- Where a listing saw it ----------------------------------------------------------------------

TEST_F(ZEFFileItemLocationTest, TakesThePlaceWhereItWasSeenWhenItsOwnIsGone)
{
    file->path();
    files.rename("/file", "/renamed");

    file->ZEF_seenAtURL(url("/renamed"));

    EXPECT_EQ(file->url(), url("/renamed"));
    EXPECT_EQ(*file->path(), "/renamed");
    EXPECT_EQ(locator.locateCount(), 0);
}

TEST_F(ZEFFileItemLocationTest, TakesThePlaceWhereItWasSeenWhenAnotherFileHasItsOwn)
{
    files.rename("/file", "/renamed");
    files.addFile("/file");

    file->ZEF_seenAtURL(url("/renamed"));

    EXPECT_EQ(file->url(), url("/renamed"));
}

TEST_F(ZEFFileItemLocationTest, StaysWhereItIsWhenItWasSeenUnderAnotherNameToo)
{
    files.addHardLink("/file", "/another name");

    file->ZEF_seenAtURL(url("/another name"));

    EXPECT_EQ(file->url(), url("/file"));
}

TEST_F(ZEFFileItemLocationTest, TakesNoPlaceWhereItIsNotAnyMore)
{
    files.rename("/file", "/hidden");
    files.addFile("/young");

    file->ZEF_seenAtURL(url("/young"));
    file->ZEF_seenAtURL(url("/missing"));

    EXPECT_EQ(file->url(), url("/file"));
}

TEST_F(ZEFFileItemLocationTest, TakesNoPlaceOnceItIsLost)
{
    hide("/file", "/hidden");
    file->currentURL();

    file->ZEF_seenAtURL(url("/hidden"));

    EXPECT_FALSE(file->url());
    EXPECT_FALSE(file->isValid());
}

// --- Questions that change nothing ---------------------------------------------------------------

TEST_F(ZEFFileItemLocationTest, LocatesItselfWithoutAChange)
{
    EXPECT_EQ(file->ZEF_locate(), url("/file"));
    move("/file", "/renamed");

    EXPECT_EQ(file->ZEF_locate(), url("/renamed"));
    EXPECT_EQ(file->url(), url("/file"));
}

TEST_F(ZEFFileItemLocationTest, LocatesNothingThatIsGoneAndStaysValid)
{
    files.remove("/file");

    EXPECT_FALSE(file->ZEF_locate());
    EXPECT_TRUE(file->isValid());
    EXPECT_TRUE(file->url());
    file->currentURL();
    EXPECT_FALSE(file->ZEF_locate());
}

TEST_F(ZEFFileItemLocationTest, CopiesItsReferenceWhileItHasOne)
{
    zef::FSRef copy;

    EXPECT_TRUE(file->ZEF_copyReference(copy));
    EXPECT_EQ(copy.inode(), file->fileiNode());
    files.remove("/file");
    file->currentURL();
    EXPECT_FALSE(file->ZEF_copyReference(copy));
}

TEST_F(ZEFFileItemLocationTest, TellsItsOwnFileFromOneWithItsNumber)
{
    const auto stat = this->stat("/file");
    EXPECT_TRUE(file->ZEF_isSameObject(stat, url("/file")));

    files.remove("/file");
    files.setNextInode(stat.inode);
    const auto young = files.addFile("/young");

    EXPECT_FALSE(file->ZEF_isSameObject(young, url("/young")));
    const auto another = item("/young");
    EXPECT_TRUE(file->ZEF_isAnotherObject(*another));
    EXPECT_FALSE(file->ZEF_isAnotherObject(*file));
}

TEST_F(ZEFFileItemLocationTest, TellsItsFileByItsNumbersWhenAHostGaveItAnotherReference)
{
    file = nullptr;
    const zef::FSRef foreign(stat("/folder"));
    const auto strange = ZEFFileItem::classObject.newFileItemForURLFsRef(url("/file"), &foreign);

    EXPECT_TRUE(strange->ZEF_isSameObject(stat("/file"), url("/file")));
    EXPECT_FALSE(strange->ZEF_isSameObject(stat("/folder"), url("/folder")));
    EXPECT_EQ(strange->changesForObserver(observer.get()), unchanged);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItemClass.h"

#include "tests/support/FakeFileItemFixture.h"
#include "tests/support/RecordingFileItem.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <string>

namespace {

class ZEFFileItemClassTest : public FakeFileItemFixture {
protected:
    static zef::Ref<ZEFFileItem> itemForURL(
        const zef::FileURL& url, const zef::FSRef* ref = nullptr)
    {
        return ZEFFileItem::classObject.newFileItemForURLFsRef(url, ref);
    }
};

// --- One object a file ---------------------------------------------------------------------------

TEST_F(ZEFFileItemClassTest, YieldsTheSameItemForTheSameFile)
{
    files.addFile("/file");
    const auto one = item("/file");

    EXPECT_EQ(item("/file"), one);
    EXPECT_EQ(ZEFFileItem::classObject.newFileItemForPath("/file"), one);
    EXPECT_EQ(one->retainCount(), 1u);
}

TEST_F(ZEFFileItemClassTest, YieldsTheSameItemForAnotherNameOfTheFile)
{
    files.addFile("/file");
    files.addHardLink("/file", "/another name");
    const auto one = item("/file");

    EXPECT_EQ(item("/another name"), one);
    EXPECT_EQ(one->url(), url("/file"));
}

TEST_F(ZEFFileItemClassTest, YieldsTheSameItemThroughLinksOnTheWay)
{
    files.addFolder("/folder");
    files.addFile("/folder/file");
    files.addLink("/link", "/folder");
    const auto one = item("/link/file");

    EXPECT_EQ(item("/folder/file"), one);
    EXPECT_EQ(one->url(), url("/link/file"));
}

TEST_F(ZEFFileItemClassTest, YieldsDifferentItemsForDifferentFiles)
{
    files.addFile("/one");
    files.addFile("/two");

    EXPECT_NE(item("/one"), item("/two"));
}

TEST_F(ZEFFileItemClassTest, TellsDevicesApart)
{
    const auto stat = files.addFile("/one");
    auto otherStat = files.addFile("/two");
    otherStat.inode = stat.inode;
    otherStat.device = stat.device + 1;
    files.setStat("/two", otherStat);
    const auto one = item("/one");

    EXPECT_NE(item("/two"), one);
    EXPECT_EQ(item("/one"), one);
}

TEST_F(ZEFFileItemClassTest, TellsWideInodeNumbersApart)
{
    files.setNextInode(2);
    files.addFile("/narrow");
    files.setNextInode(0x100000002);
    files.addFile("/wide");

    EXPECT_NE(item("/narrow"), item("/wide"));
}

TEST_F(ZEFFileItemClassTest, ForgetsAnItemThatNobodyKeeps)
{
    files.addFile("/file");
    item("/file")->registerFileObserver(observer.get());

    // A new one has no observers yet.
    EXPECT_TRUE(item("/file")->registerFileObserver(observer.get()));
}

TEST_F(ZEFFileItemClassTest, YieldsTheItemOfALinkItself)
{
    files.addFile("/file");
    files.addLink("/link", "/file");
    const auto link = item("/link");

    EXPECT_TRUE(link->isSymlink());
    EXPECT_NE(link, item("/file"));
    EXPECT_EQ(link->fileiNode(), stat("/link").inode);
}

TEST_F(ZEFFileItemClassTest, YieldsTheItemOfALinkThatLeadsNowhere)
{
    files.addLink("/link", "/nowhere");

    EXPECT_TRUE(item("/link")->isSymlink());
}

// --- What there is no item of --------------------------------------------------------------------

TEST_F(ZEFFileItemClassTest, YieldsNilForNil)
{
    EXPECT_FALSE(itemForURL(nullptr));
    EXPECT_FALSE(ZEFFileItem::classObject.newFileItemForURL(nullptr));
    EXPECT_FALSE(ZEFFileItem::classObject.newFileItemForPath(nullptr));
    EXPECT_FALSE(ZEFFileItem::classObject.newFileItemForPath(""));
    EXPECT_FALSE(ZEFFileItem::classObject.newFileItemForFSRef(nullptr));
    EXPECT_FALSE(ZEFFileItem::classObject.ZEF_newFileItemForEntry(nullptr, {}, {}));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemClassTest, YieldsNilWhereNothingIs)
{
    EXPECT_FALSE(item("/missing"));
    EXPECT_FALSE(ZEFFileItem::classObject.newFileItemForPath("/missing"));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemClassTest, YieldsNilWhereTheDiskRefuses)
{
    files.addFile("/file");
    files.setError("/file", EACCES);

    EXPECT_FALSE(item("/file"));
}

TEST_F(ZEFFileItemClassTest, YieldsNilForAPathThatIsTooLong)
{
    EXPECT_FALSE(item("/" + std::string(PATH_MAX, 'n')));
    EXPECT_EQ(files.statCount(), 0u);
}

TEST_F(ZEFFileItemClassTest, YieldsNilForAReferenceToNothing)
{
    const zef::FSRef ref(files.addFile("/file"));

    EXPECT_FALSE(ZEFFileItem::classObject.newFileItemForFSRef(&ref));
}

// --- URLs and references -------------------------------------------------------------------------

TEST_F(ZEFFileItemClassTest, MarksAFolderByASlash)
{
    files.addFolder("/folder");

    EXPECT_EQ(item("/folder")->url(), folderURL("/folder"));
}

TEST_F(ZEFFileItemClassTest, MarksWhateverCountsAsAFolderByASlash)
{
    auto stat = files.addFile("/socket");
    stat.mode = 0140755;
    files.setStat("/socket", stat);

    EXPECT_EQ(item("/socket")->url(), folderURL("/socket"));
}

TEST_F(ZEFFileItemClassTest, IgnoresTheReferenceToAFolderWhoseURLHasNoSlash)
{
    const auto stat = files.addFolder("/folder");
    const zef::FSRef ref(files.addFolder("/another"));

    const auto folder = itemForURL(url("/folder"), &ref);

    EXPECT_EQ(folder->fsRef()->inode(), stat.inode);
}

TEST_F(ZEFFileItemClassTest, TakesTheReferenceThatItIsGivenOtherwise)
{
    files.addFolder("/folder");
    files.addFile("/file");
    const zef::FSRef ref(files.addFile("/another"));

    EXPECT_EQ(itemForURL(folderURL("/folder"), &ref)->fsRef()->inode(), ref.inode());
    EXPECT_EQ(itemForURL(url("/file"), &ref)->fsRef()->inode(), ref.inode());
}

TEST_F(ZEFFileItemClassTest, IgnoresTheReferenceWhenThereIsAnItemAlready)
{
    const auto stat = files.addFile("/file");
    const zef::FSRef ref(files.addFile("/another"));
    const auto file = item("/file");

    EXPECT_EQ(itemForURL(url("/file"), &ref), file);
    EXPECT_EQ(file->fsRef()->inode(), stat.inode);
}

TEST_F(ZEFFileItemClassTest, GivesAFileThatIsAskedForByItsPathAURLWithASlash)
{
    files.addFile("/file");

    const auto file = ZEFFileItem::classObject.newFileItemForPath("/file");

    EXPECT_EQ(file->url(), folderURL("/file"));
    EXPECT_FALSE(file->isBasicDirectory());
    EXPECT_EQ(*file->path(), "/file");
    EXPECT_EQ(file->currentURL(), folderURL("/file"));
}

TEST_F(ZEFFileItemClassTest, FindsTheFileOfAReference)
{
    files.addFile("/file");
    const auto ref = this->ref("/file");
    locator.setPlace(ref, url("/file"));

    const auto file = ZEFFileItem::classObject.newFileItemForFSRef(&ref);

    ASSERT_TRUE(file);
    EXPECT_EQ(file->url(), url("/file"));
    EXPECT_EQ(file->fsRef()->inode(), ref.inode());
    EXPECT_EQ(item("/file"), file);
}

TEST_F(ZEFFileItemClassTest, TakesAtOnceWhatFindsAFileThatIsAskedForByItself)
{
    files.addFile("/file");
    const auto file = item("/file");
    EXPECT_EQ(locator.uses(ref("/file")), 1);

    item("/file");

    EXPECT_EQ(locator.uses(ref("/file")), 1);
}

// --- Classes -------------------------------------------------------------------------------------

TEST_F(ZEFFileItemClassTest, MakesItemsOfTheClassThatIsAsked)
{
    files.addFile("/file");
    files.addFile("/another");

    const auto special = RecordingFileItem::classObject.newFileItemForURL(url("/file"));

    EXPECT_TRUE(special->isKindOfClass(RecordingFileItem::classObject));
    EXPECT_FALSE(item("/another")->isKindOfClass(RecordingFileItem::classObject));
}

TEST_F(ZEFFileItemClassTest, YieldsARegisteredItemOfWhateverClass)
{
    files.addFile("/file");
    files.addFile("/another");
    const auto plain = item("/file");
    const auto special = RecordingFileItem::classObject.newFileItemForURL(url("/another"));

    EXPECT_EQ(RecordingFileItem::classObject.newFileItemForURL(url("/file")), plain);
    EXPECT_EQ(item("/another"), special);
}

// --- Entries of listings -------------------------------------------------------------------------

TEST_F(ZEFFileItemClassTest, MakesTheItemOfAnEntryWithoutASystemCall)
{
    const auto stat = files.addFile("/file");
    const zef::FSRef ref(stat, 2);
    const auto statQuestions = files.statCount();

    const auto file = ZEFFileItem::classObject.ZEF_newFileItemForEntry(url("/file"), ref, stat);
    const auto again = ZEFFileItem::classObject.ZEF_newFileItemForEntry(url("/file"), ref, stat);

    EXPECT_EQ(again, file);
    EXPECT_EQ(file->fsRef()->parentInode(), 2u);
    EXPECT_EQ(file->fileiNode(), stat.inode);
    EXPECT_EQ(files.statCount(), statQuestions);
    EXPECT_EQ(files.existsCount(), 0u);
    EXPECT_EQ(files.handleCount(), 0u);
    EXPECT_EQ(locator.locateCount(), 0);
    EXPECT_EQ(locator.uses(ref), 0);
}

TEST_F(ZEFFileItemClassTest, LetsTheItemOfAnEntryTakeItsReferenceWhenItIsFollowed)
{
    const auto stat = files.addFile("/file");
    const zef::FSRef ref(stat);
    const auto file = ZEFFileItem::classObject.ZEF_newFileItemForEntry(url("/file"), ref, stat);

    file->registerFileObserver(observer.get());
    EXPECT_EQ(locator.uses(ref), 1);
    file->changesForObserver(other.get());
    EXPECT_EQ(locator.uses(ref), 1);
}

TEST_F(ZEFFileItemClassTest, YieldsTheSameItemForAnEntryAsForItsURL)
{
    const auto stat = files.addFile("/file");
    const auto file = item("/file");

    EXPECT_EQ(
        ZEFFileItem::classObject.ZEF_newFileItemForEntry(url("/file"), zef::FSRef(stat), stat),
        file);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/SubscriptionFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zef::Ref;

/// What a check finds of the folder itself.
class ZEFDirectorySubscriptionFolderCheckTest : public SubscriptionFixture {
protected:
    ZEFDirectorySubscriptionFolderCheckTest()
    {
        folder.write("watched/a");
        subscription = watch(&subscriber);
        ReportingItem::hook = [this](auto&, const auto& record) {
            told.push_back(inWords(record));
            toldRecords.push_back(&record);
        };
    }

    RecordingSubscriber& subscriber = newSubscriber();
    Ref<ZEFFileItem> directory = item("watched");
    Ref<ZEFDirectorySubscription> subscription;
    /// The events that items were sent.
    Words told;
    std::vector<const ZEFChangeRecord*> toldRecords;
};

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, FindsNothingWhenNothingChanged)
{
    Ref<ZEFChangeArray> changes = zef::makeRef<ZEFChangeArray>();

    subscription->checkDirectory(changes);

    EXPECT_FALSE(changes);
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsEachChangeOnce)
{
    folder.write("watched/b");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared b"));
    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsAChangedFolderAsUpdatedAndTellsItsItem)
{
    folder.chmod("watched", 0700);

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched"));
    EXPECT_THAT(told, ElementsAre("updated watched"));
    EXPECT_TRUE(subscription->isValid());
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, GivesTheItemTheVeryRecordThatItReports)
{
    folder.write("watched/b");

    Ref<ZEFChangeArray> changes;
    subscription->checkDirectory(changes);

    ASSERT_TRUE(changes);
    EXPECT_THAT(toldRecords, ElementsAre(changes->objectAtIndex(0), changes->objectAtIndex(1)));
    EXPECT_EQ(changes->objectAtIndex(0)->file(), directory.get());
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsAFolderWithANewNameAsRenamed)
{
    folder.rename("watched", "new");

    EXPECT_THAT(check(*subscription), ElementsAre("renamed new", "moved in parent a"));

    EXPECT_THAT(told, ElementsAre("renamed new", "moved in parent a"));
    EXPECT_EQ(subscription->url(), folder.folderUrl("new"));
    EXPECT_EQ(*subscription->path(), folder.path("new"));
    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsAFolderWithANewParentAsMoved)
{
    folder.rename("watched", "elsewhere/watched");

    EXPECT_THAT(check(*subscription), ElementsAre("moved watched", "moved in parent a"));

    EXPECT_THAT(told, ElementsAre("moved watched", "moved in parent a"));
    EXPECT_EQ(subscription->url(), folder.folderUrl("elsewhere/watched"));
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsARenamedParentAsAMoveOfTheFolder)
{
    folder.makeFolder("outer");
    folder.makeFolder("outer/inner");
    folder.write("outer/inner/x");
    auto outer = item("outer");
    auto inner = watch(&subscriber, "outer/inner");
    folder.rename("outer", "other");
    outer->currentURL();
    folder.write("other/inner/y");

    EXPECT_THAT(check(*inner), ElementsAre("moved inner", "moved in parent x", "appeared y"));
    EXPECT_EQ(inner->url(), folder.folderUrl("other/inner"));
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, TellsItsItemOfTheMoveBeforeTheURLIsTaken)
{
    auto before = folder.folderUrl("watched");
    folder.rename("watched", "new");
    zef::FileURL during;
    ReportingItem::hook = [&](auto& about, auto&) {
        if (&about == directory.get())
            during = subscription->url();
    };

    check(*subscription);

    EXPECT_EQ(during, before);
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsALostFolderAsRemovedAndNothingElse)
{
    auto file = item("watched/a");
    folder.remove("watched");

    EXPECT_THAT(check(*subscription), ElementsAre("removed watched"));

    EXPECT_THAT(told, IsEmpty());
    EXPECT_FALSE(subscription->isValid());
    EXPECT_EQ(subscription->files()->objectAtIndex(0), file.get());
    EXPECT_EQ(catalog.openCount, 1);
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, FindsNothingAnyMoreOnceTheFolderIsRemoved)
{
    folder.remove("watched");
    check(*subscription);
    folder.makeFolder("watched");
    folder.write("watched/b");

    EXPECT_THAT(check(*subscription), IsEmpty());
    EXPECT_FALSE(subscription->isValid());
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, FindsNothingInAFolderThatSomebodyElseFoundLost)
{
    folder.remove("watched");
    directory->currentURL();

    EXPECT_THAT(check(*subscription), IsEmpty());
    EXPECT_THAT(check(*subscription), IsEmpty());
    EXPECT_TRUE(subscription->isValid());
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsAReplacedFolderAsRemoved)
{
    folder.makeFolder("other");
    folder.write("other/b");
    folder.remove("watched");
    folder.rename("other", "watched");

    EXPECT_THAT(check(*subscription), ElementsAre("removed watched"));
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, FollowsItsFolderWhenAnotherTakesItsPlace)
{
    folder.makeFolder("other");
    folder.exchange("watched", "other");

    EXPECT_THAT(check(*subscription), ElementsAre("renamed other", "moved in parent a"));
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, FollowsAFolderThatIsRenamedAgainAndAgain)
{
    folder.rename("watched", "one");
    folder.rename("one", "two");
    EXPECT_THAT(check(*subscription), ElementsAre("renamed two", "moved in parent a"));

    folder.rename("two", "watched");
    EXPECT_THAT(check(*subscription), ElementsAre("renamed watched", "moved in parent a"));
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ReportsAFolderThatIsBackUnderItsNameAsUpdated)
{
    folder.rename("watched", "one");
    folder.rename("one", "watched");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched"));
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, FollowsRenamesBelowASymbolicLink)
{
    folder.makeFolder("real");
    folder.makeFolder("real/dir");
    folder.write("real/dir/x");
    folder.symlink("real", "alias");
    auto linked = watch(&subscriber, "alias/dir");
    ASSERT_EQ(linked->url(), folder.folderUrl("alias/dir"));

    folder.rename("real/dir/x", "real/dir/y");
    EXPECT_THAT(check(*linked), ElementsAre("updated dir", "renamed y"));

    folder.rename("real/dir", "real/new");
    EXPECT_THAT(check(*linked), ElementsAre("renamed new", "moved in parent y"));
    EXPECT_EQ(linked->url(), folder.folderUrl("alias/new"));
}

TEST_F(ZEFDirectorySubscriptionFolderCheckTest, ChecksTheRootWithoutAWord)
{
    auto root = ZEFDirectorySubscription::initForSubscriber(
        nullptr, ZEFFileItem::classObject.newFileItemForPath("/").get());

    ASSERT_TRUE(root);
    EXPECT_EQ(*root->path(), "/");
    EXPECT_FALSE(root->files()->isEmpty());
}

} // namespace

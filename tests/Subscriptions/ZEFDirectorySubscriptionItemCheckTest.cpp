// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/SubscriptionFixture.h"

#include <algorithm>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using zef::Ref;

/// What a check finds of the folder's items.
class ZEFDirectorySubscriptionItemCheckTest : public SubscriptionFixture {
protected:
    /// Starts watching, now that the folder has its first contents.
    void begin()
    {
        subscription = watch(&subscriber);
        ReportingItem::hook = [this](
                                  auto&, const auto& record) { told.push_back(inWords(record)); };
    }

    /// Changes the folder itself, so that the next check is a full one.
    void touchFolder()
    {
        folder.chmod("watched", isPrivate ? 0755 : 0700);
        isPrivate = !isPrivate;
    }

    bool isKnown(const Ref<ZEFFileItem>& file) const
    {
        return subscription->files()->containsIdentical(file.get());
    }

    /// Whether the item has a record for the subscription.
    bool isObserved(const Ref<ZEFFileItem>& file)
    {
        if (!file->registerFileObserver(subscription.get()))
            return true;
        file->removeFileObserver(subscription.get());
        return false;
    }

    RecordingSubscriber& subscriber = newSubscriber();
    Ref<ZEFDirectorySubscription> subscription;
    Words told;
    bool isPrivate = false;
};

// --- The full check, row by row

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsALostFileAsRemovedAndForgetsItUntold)
{
    folder.write("watched/a");
    begin();
    auto file = item("watched/a");
    folder.remove("watched/a");

    Ref<ZEFChangeArray> changes;
    subscription->checkDirectory(changes);

    ASSERT_TRUE(changes);
    EXPECT_THAT(inWords(*changes), ElementsAre("updated watched", "removed a"));
    EXPECT_EQ(changes->objectAtIndex(1)->file(), file.get());
    EXPECT_THAT(told, ElementsAre("updated watched"));
    EXPECT_FALSE(isKnown(file));
    EXPECT_FALSE(isObserved(file));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsAFileInAnotherFolderAsMovedAndForgetsIt)
{
    folder.write("watched/a");
    begin();
    auto file = item("watched/a");
    folder.rename("watched/a", "elsewhere/b");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "moved b"));

    EXPECT_THAT(told, ElementsAre("updated watched", "moved b"));
    EXPECT_FALSE(isKnown(file));
    EXPECT_FALSE(isObserved(file));
    EXPECT_TRUE(file->isValid());
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsAFileWithAnotherNameAsRenamedAndKeepsIt)
{
    folder.write("watched/a");
    begin();
    auto file = item("watched/a");
    folder.rename("watched/a", "watched/b");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "renamed b"));

    EXPECT_THAT(told, ElementsAre("updated watched", "renamed b"));
    EXPECT_TRUE(isKnown(file));
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsAChildOfARenamedFolderAsMovedInParent)
{
    folder.write("watched/a");
    folder.makeFolder("watched/sub");
    begin();
    auto file = item("watched/a");
    folder.rename("watched", "new");

    EXPECT_THAT(check(*subscription),
        UnorderedElementsAre("renamed new", "moved in parent a", "moved in parent sub"));

    EXPECT_TRUE(isKnown(file));
    EXPECT_EQ(file->url(), folder.url("new/a"));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsAChildRenamedWithItsFolderAsMovedInParent)
{
    folder.write("watched/a");
    begin();
    folder.rename("watched/a", "watched/b");
    folder.rename("watched", "new");

    EXPECT_THAT(check(*subscription), ElementsAre("renamed new", "moved in parent b"));
    EXPECT_THAT(told, ElementsAre("renamed new", "moved in parent b"));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsAChildThatLeftARenamedFolderAsMoved)
{
    folder.write("watched/a");
    begin();
    auto file = item("watched/a");
    folder.rename("watched/a", "elsewhere/a");
    folder.rename("watched", "new");

    EXPECT_THAT(check(*subscription), ElementsAre("renamed new", "moved a"));
    EXPECT_FALSE(isKnown(file));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsAChangedFileAsUpdatedInAFullCheck)
{
    folder.write("watched/a");
    begin();
    auto file = item("watched/a");
    touchFolder();
    check(*subscription);
    told.clear();
    writeVisibly("watched/a");
    touchFolder();

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "updated a"));
    EXPECT_THAT(told, ElementsAre("updated watched", "updated a"));
    EXPECT_TRUE(isKnown(file));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, SaysNothingOfAnUnchangedFileInAFullCheck)
{
    folder.write("watched/a");
    begin();
    touchFolder();

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched"));
    EXPECT_TRUE(isObserved(item("watched/a")));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, LogsAFileThatWasLostBeforeItFirstAskedAndKeepsIt)
{
    folder.write("watched/a");
    begin();
    auto file = item("watched/a");
    folder.remove("watched/a");
    ASSERT_FALSE(file->currentURL());

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched"));

    EXPECT_THAT(log.lines(),
        ElementsAre("Error in ZEFDirectorySubscription: apparently failed to remove file "
            + file->description()));
    log.clear();
    EXPECT_TRUE(isKnown(file));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, FindsANewFileBesideThoseThatSomebodyElseFoundLost)
{
    folder.write("watched/a");
    folder.write("watched/b");
    begin();
    for (const auto* name : { "watched/a", "watched/b" }) {
        auto file = item(name);
        folder.remove(name);
        file->currentURL();
    }
    folder.write("watched/c");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared c"));
    EXPECT_EQ(log.count("apparently failed to remove file"), 2u);
    log.clear();
}

// --- The order

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsTheFolderThenItsItemsInOrderThenNewOnes)
{
    for (const auto* name : { "a", "b", "c", "d" })
        folder.write(std::string("watched/") + name);
    begin();
    Words order = { "updated watched" };
    const auto files = subscription->files();
    for (const auto& file : *files) {
        const auto name = nameOf(*file);
        order.push_back(name == "a" ? "removed a" : "renamed " + name + "2");
    }
    folder.remove("watched/a");
    for (const auto* name : { "d", "b", "c" })
        folder.rename(std::string("watched/") + name, std::string("watched/") + name + "2");
    folder.write("watched/new");
    order.emplace_back("appeared new");

    EXPECT_EQ(check(*subscription), order);
}

// --- The quick check

TEST_F(ZEFDirectorySubscriptionItemCheckTest, ReportsAChangedSubfolderWhileTheFolderIsUnchanged)
{
    folder.makeFolder("watched/sub");
    folder.makeFolder("watched/other");
    begin();
    folder.write("watched/sub/x");

    EXPECT_THAT(check(*subscription), ElementsAre("updated sub"));
    EXPECT_THAT(told, ElementsAre("updated sub"));
    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, AsksNoPlainFileWhileTheFolderIsUnchanged)
{
    folder.write("watched/a");
    folder.makeFolder("watched/sub");
    begin();
    touchFolder();
    check(*subscription);
    writeVisibly("watched/a");

    EXPECT_THAT(check(*subscription), IsEmpty());

    folder.write("watched/sub/x");
    EXPECT_THAT(check(*subscription), ElementsAre("updated sub"));

    touchFolder();
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "updated a"));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, DoesNotLookForNewItemsAfterAQuickCheck)
{
    folder.makeFolder("watched/sub");
    begin();
    const int opened = catalog.openCount;
    folder.write("watched/sub/x");

    ASSERT_THAT(check(*subscription), ElementsAre("updated sub"));

    EXPECT_EQ(catalog.openCount, opened);
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, AsksANewSubfolderFromThenOn)
{
    begin();
    folder.makeFolder("watched/sub");
    ASSERT_THAT(check(*subscription), ElementsAre("updated watched", "appeared sub"));

    folder.write("watched/sub/x");

    EXPECT_THAT(check(*subscription), ElementsAre("updated sub"));
}

TEST_F(ZEFDirectorySubscriptionItemCheckTest, AsksAForgottenSubfolderNoMore)
{
    folder.makeFolder("watched/sub");
    begin();
    auto sub = item("watched/sub");
    folder.rename("watched/sub", "elsewhere/sub");
    ASSERT_THAT(check(*subscription), ElementsAre("updated watched", "moved sub"));

    folder.write("elsewhere/sub/x");

    EXPECT_THAT(check(*subscription), IsEmpty());
    EXPECT_FALSE(isObserved(sub));
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"

#include "tests/support/FewDescriptors.h"
#include "tests/support/SubscriptionFixture.h"
#include "tests/support/WithoutPrivileges.h"

#include <algorithm>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using zef::Ref;

/// When a check lists the folder, and what comes of it.
class ZEFDirectorySubscriptionListingTest : public SubscriptionFixture {
protected:
    void begin() { subscription = watch(&newSubscriber()); }

    /// Whether a check lists the folder.
    bool checkLists()
    {
        const int before = catalog.openCount;
        check(*subscription);
        return catalog.openCount > before;
    }

    Ref<ZEFDirectorySubscription> subscription;
};

TEST_F(ZEFDirectorySubscriptionListingTest, ListsTheFolderWhenItHoldsMoreThanIsKnown)
{
    begin();
    folder.write("watched/a");

    EXPECT_TRUE(checkLists());
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsTheFolderWhenItHoldsAsMuchAsIsKnown)
{
    folder.write("watched/a");
    begin();
    folder.chmod("watched", 0700);

    EXPECT_TRUE(checkLists());
}

TEST_F(ZEFDirectorySubscriptionListingTest, DoesNotListTheFolderWhenItIsUnchanged)
{
    folder.write("watched/a");
    begin();

    EXPECT_FALSE(checkLists());
}

TEST_F(ZEFDirectorySubscriptionListingTest, DoesNotListAFolderThatHoldsLessThanIsKnown)
{
    writeFiles(3);
    begin();
    const auto first = nameOf(*subscription->files()->objectAtIndex(0));
    folder.chmod("watched", 0700);
    // Goes after it was looked at and before the entries are counted.
    catalog.beforeCounting = [&] { folder.remove("watched/" + first); };

    EXPECT_FALSE(checkLists());

    catalog.beforeCounting = nullptr;
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "removed " + first));
}

TEST_F(ZEFDirectorySubscriptionListingTest, CountsForgottenItemsAsUnknown)
{
    writeFiles(3);
    begin();
    folder.remove("watched/001");

    EXPECT_TRUE(checkLists());
}

TEST_F(ZEFDirectorySubscriptionListingTest, TakesAFolderThatCantBeCountedForEmpty)
{
    begin();
    folder.write("watched/a");
    check(*subscription);
    folder.write("watched/b");
    catalog.countResult.store(zef::FileError::io);

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsAFolderThatCantBeCountedWhenNothingIsKnown)
{
    begin();
    folder.write("watched/a");
    catalog.countResult.store(zef::FileError::io);

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared a"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsAgainAfterItFoundNoDescriptorToCountWith)
{
    folder.write("watched/a");
    begin();
    folder.write("watched/b");
    catalog.countResult.store(zef::FileError::tooManyOpenFiles);
    ASSERT_THAT(check(*subscription), ElementsAre("updated watched"));
    ASSERT_THAT(check(*subscription), IsEmpty());

    catalog.countResult.store(zef::FileError::none);

    EXPECT_THAT(check(*subscription), ElementsAre("appeared b"));
    EXPECT_FALSE(checkLists());
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsAgainAfterItFoundNoDescriptorOrMemoryToListWith)
{
    for (const auto result : { zef::FileError::tooManyOpenFiles, zef::FileError::outOfMemory }) {
        begin();
        const auto name = "new" + std::to_string(numberOf(result));
        folder.write("watched/" + name);
        catalog.openResult.store(result);
        ASSERT_THAT(check(*subscription), ElementsAre("updated watched"));
        EXPECT_THAT(log.lines(), SizeIs(1));
        log.clear();

        catalog.openResult.store(zef::FileError::none);

        EXPECT_THAT(check(*subscription), ElementsAre("appeared " + name));
    }
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsNoMoreAfterAnotherFailure)
{
    begin();
    folder.write("watched/a");
    catalog.openResult.store(zef::FileError::io);
    ASSERT_THAT(check(*subscription), ElementsAre("updated watched"));
    log.clear();
    catalog.openResult.store(zef::FileError::none);

    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsWhileTheProcessHasNoDescriptorLeft)
{
    begin();
    folder.write("watched/a");
    Words words;
    {
        const FewDescriptors none(0);
        words = check(*subscription);
    }
    // What was not listed then is listed now.
    for (const auto& word : check(*subscription))
        words.push_back(word);

    log.clear();
    EXPECT_THAT(words, ElementsAre("updated watched", "appeared a"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, FindsTheFilesOfAFolderThatBecomesReadable)
{
    folder.write("watched/a");
    folder.chmod("watched", 0300);
    const WithoutPrivileges user;
    begin();
    EXPECT_TRUE(subscription->files()->isEmpty());
    ASSERT_THAT(check(*subscription), IsEmpty());

    folder.chmod("watched", 0700);

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared a"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, TellsANewItemThatItAppeared)
{
    begin();
    Words told;
    const ZEFChangeRecord* record = nullptr;
    ReportingItem::hook = [&](auto&, const auto& sent) {
        told.push_back(inWords(sent));
        record = &sent;
    };
    folder.write("watched/a");

    Ref<ZEFChangeArray> changes;
    subscription->checkDirectory(changes);

    EXPECT_THAT(told, ElementsAre("updated watched", "appeared a"));
    ASSERT_EQ(changes->count(), 2u);
    EXPECT_EQ(changes->objectAtIndex(1), record);
    EXPECT_EQ(record->file(), item("watched/a").get());
}

TEST_F(ZEFDirectorySubscriptionListingTest, SkipsKnownItemsSilently)
{
    writeFiles(3);
    begin();
    folder.write("watched/new");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared new"));
    EXPECT_EQ(subscription->files()->count(), 4u);
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsByHandWithoutAnArray)
{
    begin();
    folder.write("watched/a");

    subscription->ZEF_scanDirectoryForUpdatedFiles(nullptr, false);

    EXPECT_THAT(names(subscription->files()), ElementsAre("a"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, ListsByHandIntoAnArray)
{
    folder.write("watched/a");
    begin();
    folder.write("watched/b");
    const auto changes = zef::makeRef<ZEFChangeArray>();

    subscription->ZEF_scanDirectoryForUpdatedFiles(changes.get(), false);

    EXPECT_THAT(inWords(*changes), ElementsAre("appeared b"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, WatchesANewSubfolderByTheKernelQueue)
{
    begin();
    folder.makeFolder("watched/sub");

    check(*subscription);

    EXPECT_TRUE(item("watched/sub")->usingKQueue());
}

TEST_F(ZEFDirectorySubscriptionListingTest, ReportsAFileThatMovedInAsAppeared)
{
    begin();
    folder.write("elsewhere/a");
    auto file = item("elsewhere/a");
    folder.rename("elsewhere/a", "watched/b");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared b"));
    EXPECT_TRUE(subscription->files()->containsIdentical(file.get()));
}

TEST_F(ZEFDirectorySubscriptionListingTest, ReportsAFileThatIsWrittenAnewAsTwoFiles)
{
    folder.write("watched/a", "old");
    begin();
    const auto old = item("watched/a");
    folder.write("watched/.a.swp", "new");
    folder.rename("watched/.a.swp", "watched/a");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "removed a", "appeared a"));
    EXPECT_FALSE(subscription->files()->containsIdentical(old.get()));
    EXPECT_TRUE(subscription->files()->containsIdentical(item("watched/a").get()));
}

TEST_F(ZEFDirectorySubscriptionListingTest, ReportsAFileThatIsBackAtOnceAsAnother)
{
    folder.write("watched/a");
    begin();
    for (int round = 0; round < 5; ++round) {
        folder.remove("watched/a");
        folder.write("watched/a");

        EXPECT_THAT(
            check(*subscription), ElementsAre("updated watched", "removed a", "appeared a"));
    }
}

TEST_F(ZEFDirectorySubscriptionListingTest, ReportsTwoFilesThatSwapTheirNamesAsRenamed)
{
    folder.write("watched/a");
    folder.write("watched/b");
    begin();
    folder.exchange("watched/a", "watched/b");

    EXPECT_THAT(
        check(*subscription), UnorderedElementsAre("updated watched", "renamed a", "renamed b"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, ReportsAFolderInThePlaceOfAFile)
{
    folder.write("watched/a");
    begin();
    folder.remove("watched/a");
    folder.makeFolder("watched/a");

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "removed a", "appeared a"));
    EXPECT_TRUE(subscription->files()->objectAtIndex(0)->isBasicDirectory());
}

TEST_F(ZEFDirectorySubscriptionListingTest, KnowsHardLinksAsOneItem)
{
    folder.write("watched/a");
    folder.link("watched/a", "watched/b");
    begin();
    EXPECT_EQ(subscription->files()->count(), 1u);

    folder.link("watched/a", "watched/c");
    EXPECT_THAT(check(*subscription), testing::Contains("updated watched"));
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionListingTest, FollowsAHardLinkByTheNameThatIsLeft)
{
    folder.write("watched/a");
    folder.link("watched/a", "watched/b");
    begin();
    const auto followed = nameOf(*subscription->files()->objectAtIndex(0));
    const auto other = followed == "a" ? "b" : "a";
    folder.remove("watched/" + followed);

    EXPECT_THAT(
        check(*subscription), ElementsAre("updated watched", std::string("renamed ") + other));
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionListingTest, ReportsALinkAsMovedWhenOnlyAnotherFoldersNameIsLeft)
{
    folder.write("elsewhere/a");
    auto file = item("elsewhere/a");
    folder.link("elsewhere/a", "watched/b");
    begin();
    ASSERT_THAT(names(subscription->files()), ElementsAre("a"));
    folder.remove("watched/b");

    EXPECT_THAT(check(*subscription), testing::Contains("moved a"));
    EXPECT_TRUE(subscription->files()->isEmpty());
}

TEST_F(ZEFDirectorySubscriptionListingTest, KeepsALinkWhoseItemIsFollowedInAnotherFolder)
{
    folder.write("elsewhere/a");
    auto file = item("elsewhere/a");
    folder.link("elsewhere/a", "watched/b");
    begin();
    folder.write("watched/c");

    EXPECT_THAT(check(*subscription), testing::Contains("appeared c"));
    EXPECT_THAT(names(subscription->files()), ElementsAre("a", "c"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, FindsWhatIsNewBesideFilesThatAreKnownTwice)
{
    begin();
    // One after the other, so that they aren't known in the order of the folder.
    for (const auto* name : { "a", "b", "c", "d", "e", "f", "g", "h" }) {
        folder.write("watched/" + std::string(name));
        check(*subscription);
    }
    const auto files = subscription->files();
    std::vector<Ref<ZEFFileItem>> twins;
    for (const auto& file : *files) {
        file->ZEF_container()->remove(file->fileiNodeHash());
        twins.push_back(item("watched/" + nameOf(*file)));
    }
    folder.chmod("watched", 0700);
    check(*subscription);
    ASSERT_GT(subscription->files()->count(), 9u);
    folder.remove("watched/" + nameOf(*files->objectAtIndex(0)));
    folder.write("watched/new");

    EXPECT_THAT(check(*subscription), testing::Contains("appeared new"));
}

TEST_F(ZEFDirectorySubscriptionListingTest, ForgetsAndFindsHundredsOfFiles)
{
    writeFiles(500);
    begin();
    for (int number = 0; number < 499; ++number)
        folder.remove("watched/" + std::to_string(1000 + number).substr(1));
    EXPECT_THAT(check(*subscription), SizeIs(500));
    EXPECT_EQ(subscription->files()->count(), 1u);

    writeFiles(499);

    EXPECT_THAT(check(*subscription), SizeIs(500));
    EXPECT_EQ(subscription->files()->count(), 500u);
}

} // namespace

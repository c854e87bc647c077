// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/SpyNotifier.h"
#include "tests/support/SubscriptionFixture.h"

#include <optional>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zef::makeRef;
using zef::Ref;

class ZEFDirectorySubscriptionTest : public SubscriptionFixture {
protected:
    static std::string refusal(const std::string& url)
    {
        return "The path " + url
            + " does not point to a valid directory, so an ZEFDirectorySubscription object cannot "
              "be created.";
    }

    /// The lines that were logged, which are expected.
    std::vector<std::string> takeLog()
    {
        auto lines = log.lines();
        log.clear();
        return lines;
    }
};

// --- Making one

TEST_F(ZEFDirectorySubscriptionTest, WithoutASubscriberListsItsFolderAllTheSame)
{
    folder.write("watched/a");

    auto subscription = watch(nullptr);

    EXPECT_EQ(subscription->numberOfSubscribers(), 0);
    EXPECT_THAT(names(subscription->files()), ElementsAre("a"));
}

TEST_F(ZEFDirectorySubscriptionTest, WithASubscriberThatDoesNotConformHasNone)
{
    auto object = item("elsewhere");

    auto subscription = watch(object.get());

    ASSERT_TRUE(subscription);
    EXPECT_EQ(subscription->numberOfSubscribers(), 0);
}

TEST_F(ZEFDirectorySubscriptionTest, SubscribesItsFirstSubscriber)
{
    EXPECT_EQ(watch(&newSubscriber())->numberOfSubscribers(), 1);
}

TEST_F(ZEFDirectorySubscriptionTest, ListsItsFolderAtOnceUnlessToldOtherwise)
{
    folder.write("watched/a");
    auto directory = item("watched");

    auto shortest = ZEFDirectorySubscription::initForSubscriber(nullptr, directory.get());
    auto withFlag = ZEFDirectorySubscription::initForSubscriber(nullptr, directory.get(), false);
    auto full = ZEFDirectorySubscription::initForSubscriber(
        nullptr, directory.get(), &ReportingItem::classObject, false);

    for (const auto& subscription : { shortest, withFlag, full }) {
        EXPECT_FALSE(subscription->isLoading());
        EXPECT_EQ(subscription->files()->count(), 1u);
    }
}

TEST_F(ZEFDirectorySubscriptionTest, ListsItsFolderInTheBackgroundIfToldSo)
{
    holdReaders();
    folder.write("watched/a");
    auto directory = item("watched");

    auto withFlag = ZEFDirectorySubscription::initForSubscriber(nullptr, directory.get(), true);
    auto full = ZEFDirectorySubscription::initForSubscriber(
        nullptr, directory.get(), &ReportingItem::classObject, true);

    for (const auto& subscription : { withFlag, full }) {
        EXPECT_TRUE(subscription->isLoading());
        EXPECT_TRUE(subscription->files()->isEmpty());
    }
    full->loadImmediately();
    withFlag->loadImmediately();
}

TEST_F(ZEFDirectorySubscriptionTest, MakesItemsOfTheFoldersOwnClassWhateverClassItIsGiven)
{
    folder.write("watched/a");

    auto subscription = ZEFDirectorySubscription::initForSubscriber(
        nullptr, item("watched").get(), &ZEFFileItem::classObject, false);

    const auto files = subscription->files();
    EXPECT_EQ(&files->objectAtIndex(0)->objectClass(), &ReportingItem::classObject);
}

TEST_F(ZEFDirectorySubscriptionTest, ReportsNothingOfItsFirstListing)
{
    folder.write("watched/a");
    auto& subscriber = newSubscriber();
    int events = 0;
    ReportingItem::hook = [&](auto&, auto&) { ++events; };

    auto subscription = watch(&subscriber);

    EXPECT_THAT(subscriber.calls, IsEmpty());
    EXPECT_EQ(events, 0);
    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionTest, KnowsDirectChildrenAndNothingBelow)
{
    folder.makeFolder("watched/sub");
    folder.write("watched/sub/deep");
    folder.write("watched/.hidden");
    folder.symlink("nowhere", "watched/link");

    auto subscription = watch();

    EXPECT_THAT(names(subscription->files()), ElementsAre(".hidden", "link", "sub"));
}

TEST_F(ZEFDirectorySubscriptionTest, WatchesItsFolderByTheKernelQueue)
{
    auto directory = item("watched");
    ASSERT_FALSE(directory->usingKQueue());

    auto subscription = watch();

    EXPECT_TRUE(directory->usingKQueue());
}

TEST_F(ZEFDirectorySubscriptionTest, WatchesListedSubfoldersByTheKernelQueueButNotFiles)
{
    folder.makeFolder("watched/sub");
    folder.write("watched/file");

    auto subscription = watch();

    EXPECT_TRUE(item("watched/sub")->usingKQueue());
    EXPECT_FALSE(item("watched/file")->usingKQueue());
}

TEST_F(ZEFDirectorySubscriptionTest, DoesNotRestartTheWatchOfASubfolder)
{
    folder.makeFolder("watched/sub");
    auto sub = item("watched/sub");
    sub->initKQueue();
    SpyNotifier notifier;

    auto subscription = watch();

    EXPECT_EQ(notifier.openCount(*sub), 0);
}

TEST_F(ZEFDirectorySubscriptionTest, RestartsTheWatchOfItsOwnFolder)
{
    auto first = watch();
    SpyNotifier notifier;

    auto second = watch();

    EXPECT_EQ(notifier.openCount(*first->directoryFile()), 1);
}

TEST_F(ZEFDirectorySubscriptionTest, ObservesItsFolderFromTheStart)
{
    auto subscription = watch();

    EXPECT_FALSE(item("watched")->registerFileObserver(subscription.get()));
}

TEST_F(ZEFDirectorySubscriptionTest, LosesNoFileToWhoeverAsksTheFolderBeforeItsFirstCheck)
{
    auto subscription = watch();
    auto parent = watch(nullptr, "");
    folder.write("watched/new");

    EXPECT_THAT(check(*parent), ElementsAre("updated watched"));
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared new"));
}

TEST_F(ZEFDirectorySubscriptionTest, TakesNoRecordFromADeadOneAtTheSameAddress)
{
    auto directory = item("watched");
    auto first = watch();
    const void* const address = first.get();
    first = nullptr;
    folder.write("watched/a");

    Ref<ZEFDirectorySubscription> second;
    std::vector<Ref<ZEFDirectorySubscription>> others;
    for (int attempt = 0; attempt < 100 && second.get() != address; ++attempt) {
        others.push_back(std::move(second));
        second = watch();
    }
    if (second.get() != address)
        GTEST_SKIP() << "this heap gives no address twice";

    EXPECT_THAT(check(*second), IsEmpty());
}

// --- What can't be watched

TEST_F(ZEFDirectorySubscriptionTest, IsNotMadeForNil)
{
    EXPECT_FALSE(ZEFDirectorySubscription::initForSubscriber(&newSubscriber(), nullptr));

    EXPECT_THAT(takeLog(), ElementsAre(refusal("(null)")));
}

TEST_F(ZEFDirectorySubscriptionTest, IsNotMadeForARegularFile)
{
    const auto url = folder.write("watched/a");

    EXPECT_FALSE(watch(&newSubscriber(), "watched/a"));

    EXPECT_THAT(takeLog(), ElementsAre(refusal(url.absoluteString())));
}

TEST_F(ZEFDirectorySubscriptionTest, IsNotMadeForAFolderThatIsLost)
{
    auto directory = item("watched");
    folder.remove("watched");
    directory->currentURL();

    EXPECT_FALSE(ZEFDirectorySubscription::initForSubscriber(&newSubscriber(), directory.get()));

    EXPECT_THAT(takeLog(), ElementsAre(refusal("(null)")));
}

TEST_F(ZEFDirectorySubscriptionTest, StartsNothingWhenItIsNotMade)
{
    folder.write("watched/a");
    auto file = item("watched/a");
    auto& subscriber = newSubscriber();

    EXPECT_FALSE(ZEFDirectorySubscription::initForSubscriber(&subscriber, file.get(), true));

    EXPECT_FALSE(file->usingKQueue());
    EXPECT_EQ(catalog.openCount, 0);
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_EQ(takeLog().size(), 1u);
}

// --- Questions

TEST_F(ZEFDirectorySubscriptionTest, GivesANewArrayOfItsItemsEachTime)
{
    folder.write("watched/a");
    auto subscription = watch();
    auto files = subscription->files();

    files->removeAllObjects();

    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionTest, ItsItemsAreTheCanonicalOnes)
{
    folder.write("watched/a");
    auto file = item("watched/a");

    auto subscription = watch();

    EXPECT_EQ(subscription->files()->objectAtIndex(0), file.get());
}

TEST_F(ZEFDirectorySubscriptionTest, ItsURLIsTheFolderItemsAtFirst)
{
    auto subscription = watch();

    EXPECT_EQ(subscription->url(), folder.folderUrl("watched"));
    EXPECT_EQ(*subscription->path(), folder.path("watched"));
}

TEST_F(ZEFDirectorySubscriptionTest, ItsPathFollowsTheFolderAtOnceAndItsURLWithTheNextCheck)
{
    auto subscription = watch();
    folder.rename("watched", "new");
    item("new")->currentURL();

    EXPECT_EQ(*subscription->path(), folder.path("new"));
    EXPECT_EQ(subscription->url(), folder.folderUrl("watched"));

    EXPECT_THAT(check(*subscription), ElementsAre("renamed new"));
    EXPECT_EQ(subscription->url(), folder.folderUrl("new"));
}

TEST_F(ZEFDirectorySubscriptionTest, HasNoPathAndNoFileOnceTheFolderIsLost)
{
    auto subscription = watch();
    auto directory = item("watched");
    EXPECT_EQ(subscription->directoryFile(), directory.get());
    folder.remove("watched");

    EXPECT_THAT(check(*subscription), ElementsAre("removed watched"));

    EXPECT_EQ(subscription->directoryFile(), nullptr);
    EXPECT_EQ(subscription->path(), nullptr);
}

TEST_F(ZEFDirectorySubscriptionTest, HasNoFileOnceSomebodyElseFoundTheFolderLost)
{
    auto subscription = watch();
    auto directory = item("watched");
    folder.remove("watched");
    directory->currentURL();

    EXPECT_EQ(subscription->directoryFile(), nullptr);
    EXPECT_TRUE(subscription->isValid());
}

TEST_F(ZEFDirectorySubscriptionTest, DescribesItselfByClassAddressAndURL)
{
    auto subscription = watch();
    std::ostringstream expected;
    expected << "<ZEFDirectorySubscription: " << static_cast<const void*>(subscription.get())
             << ">, " << folder.folderUrl("watched").absoluteString();

    EXPECT_EQ(subscription->description(), expected.str());
}

TEST_F(ZEFDirectorySubscriptionTest, TakesAnotherURLAndItsOwn)
{
    auto subscription = watch();

    subscription->ZEF_setURL(folder.folderUrl("elsewhere"));
    EXPECT_EQ(subscription->url(), folder.folderUrl("elsewhere"));

    subscription->ZEF_setURL(subscription->url());
    EXPECT_EQ(subscription->url(), folder.folderUrl("elsewhere"));
}

// --- The end

TEST_F(ZEFDirectorySubscriptionTest, LetsGoOfItsItemsWhenItDies)
{
    writeFiles(3);
    const int before = ReportingItem::liveCount;
    auto subscription = watch();
    ASSERT_EQ(ReportingItem::liveCount, before + 4);

    subscription = nullptr;

    EXPECT_EQ(ReportingItem::liveCount, before);
}

TEST_F(ZEFDirectorySubscriptionTest, StopsObservingItsItemsWhenItDies)
{
    folder.write("watched/a");
    auto file = item("watched/a");
    auto subscription = watch();
    folder.write("watched/b");
    check(*subscription);
    const auto* const dead = subscription.get();
    ASSERT_FALSE(file->registerFileObserver(dead));

    subscription = nullptr;

    EXPECT_FALSE(file->removeFileObserver(dead));
}

TEST_F(ZEFDirectorySubscriptionTest, LeavesItsFoldersObserverAndWatchAsTheyAreWhenItDies)
{
    auto directory = item("watched");
    auto subscription = watch();
    const auto* const dead = subscription.get();

    subscription = nullptr;

    EXPECT_TRUE(directory->usingKQueue());
    EXPECT_TRUE(directory->removeFileObserver(dead));
}

TEST_F(ZEFDirectorySubscriptionTest, TellsNobodyWhenItDies)
{
    auto& subscriber = newSubscriber();
    auto subscription = watch(&subscriber);

    subscription = nullptr;

    EXPECT_THAT(subscriber.calls, IsEmpty());
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/FakeChangeNotifier.h"
#include "tests/support/SubscriptionFixture.h"

#include <stdexcept>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using zef::Ref;

/// What happens while a check is under way: on the disk, and in the hooks that it calls.
class ZEFDirectorySubscriptionRaceTest : public SubscriptionFixture {
protected:
    /// Watches a folder of two subfolders; their names in the order in which they are asked.
    void beginWithSubfolders()
    {
        folder.makeFolder("watched/a");
        folder.makeFolder("watched/b");
        subscription = watch(&subscriber);
        first = nameOf(*subscription->files()->objectAtIndex(0));
        second = nameOf(*subscription->files()->objectAtIndex(1));
    }

    /// Calls `work` at the first event that an item is sent.
    static void atFirstEvent(std::function<void()> work)
    {
        ReportingItem::hook = [work = std::move(work)](auto&, auto&) {
            ReportingItem::hook = nullptr;
            work();
        };
    }

    /// A subscription that has asked each item once.
    Ref<ZEFDirectorySubscription> watchObserved()
    {
        auto made = watch(&subscriber);
        folder.chmod("watched", isPrivate ? 0755 : 0700);
        isPrivate = !isPrivate;
        check(*made);
        return made;
    }

    static Words joined(Words words, const Words& more)
    {
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    RecordingSubscriber& subscriber = newSubscriber();
    Ref<ZEFDirectorySubscription> subscription;
    std::string first;
    std::string second;
    bool isPrivate = false;
};

// --- On the disk

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNoSubfolderThatIsRenamedAfterTheFolderWasAsked)
{
    beginWithSubfolders();
    folder.write("watched/" + first + "/x");
    atFirstEvent([&] { folder.rename("watched/" + second, "watched/new"); });

    EXPECT_THAT(check(*subscription), ElementsAre("updated " + first));
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "renamed new"));
    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNoSubfolderThatLeavesAfterTheFolderWasAsked)
{
    beginWithSubfolders();
    folder.write("watched/" + first + "/x");
    atFirstEvent([&] { folder.rename("watched/" + second, "elsewhere/new"); });

    EXPECT_THAT(check(*subscription), ElementsAre("updated " + first));
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "moved new"));
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNoSubfolderThatIsDeletedAfterTheFolderWasAsked)
{
    beginWithSubfolders();
    folder.write("watched/" + first + "/x");
    atFirstEvent([&] { folder.remove("watched/" + second); });

    EXPECT_THAT(check(*subscription), ElementsAre("updated " + first));
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "removed " + second));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNoSubfolderOfWhoseMoveTheFolderDoesNotKnow)
{
    FakeChangeNotifier notifier;
    zef::ChangeNotifier::replaceShared(&notifier);
    beginWithSubfolders();
    folder.rename("watched/" + second, "watched/new");

    EXPECT_THAT(check(*subscription), IsEmpty());
    EXPECT_THAT(check(*subscription), ElementsAre("renamed new"));
    EXPECT_THAT(check(*subscription), IsEmpty());
    subscription = nullptr;
    zef::ChangeNotifier::replaceShared(nullptr);
}

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNoFileThatIsMadeAfterTheFolderWasAsked)
{
    beginWithSubfolders();
    folder.write("watched/" + first + "/x");
    atFirstEvent([&] { folder.write("watched/new"); });

    const auto found = check(*subscription);

    EXPECT_THAT(joined(found, check(*subscription)),
        ElementsAre("updated " + first, "updated watched", "appeared new"));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNoFileThatIsMadeBetweenTheCountAndTheListing)
{
    folder.write("watched/a");
    subscription = watch(&subscriber);
    folder.chmod("watched", 0700);
    catalog.beforeOpening = [&] { folder.write("watched/new"); };
    const auto found = check(*subscription);
    catalog.beforeOpening = nullptr;

    EXPECT_THAT(joined(found, check(*subscription)), Contains("appeared new"));
    EXPECT_EQ(subscription->files()->count(), 2u);
}

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNoFileThatIsRenamedAfterItWasAsked)
{
    folder.write("watched/a");
    subscription = watch(&subscriber);
    folder.chmod("watched", 0700);
    catalog.beforeCounting = [&] { folder.rename("watched/a", "watched/new"); };
    const auto found = check(*subscription);
    catalog.beforeCounting = nullptr;

    EXPECT_THAT(found, ElementsAre("updated watched"));
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "renamed new"));
    EXPECT_EQ(subscription->files()->count(), 1u);
}

TEST_F(ZEFDirectorySubscriptionRaceTest, LosesNothingWhenTheFolderGoesBeforeItIsListed)
{
    folder.write("watched/a");
    subscription = watch(&subscriber);
    folder.write("watched/b");
    catalog.beforeCounting = [&] { folder.remove("watched"); };
    EXPECT_THAT(check(*subscription), ElementsAre("updated watched"));
    catalog.beforeCounting = nullptr;

    EXPECT_THAT(check(*subscription), ElementsAre("removed watched"));
}

// --- In a hook

TEST_F(ZEFDirectorySubscriptionRaceTest, AHookMaySubscribeAndUnsubscribe)
{
    folder.write("watched/a");
    subscription = watch(&subscriber);
    auto& other = newSubscriber();
    folder.write("watched/b");
    atFirstEvent([&] {
        subscription->subscribe(&other);
        subscription->unsubscribe(&subscriber);
    });

    subscription->checkDirectory();

    EXPECT_THAT(subscriber.calls, IsEmpty());
    EXPECT_THAT(other.words(), ElementsAre(ElementsAre("updated watched", "appeared b")));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AHookMayCheckAgain)
{
    beginWithSubfolders();
    folder.write("watched/" + first + "/x");
    folder.write("watched/" + second + "/x");
    Words inner;
    atFirstEvent([&] { inner = check(*subscription); });

    EXPECT_THAT(check(*subscription), ElementsAre("updated " + first));
    EXPECT_THAT(inner, ElementsAre("updated " + second));
    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AHookMayCheckAgainInAFullCheck)
{
    writeFiles(20);
    subscription = watch(&subscriber);
    const auto files = subscription->files();
    for (const auto& file : *files)
        folder.rename("watched/" + nameOf(*file), "watched/" + nameOf(*file) + "x");
    Words inner;
    int events = 0;
    ReportingItem::hook = [&](auto&, auto&) {
        if (++events == 5)
            inner = check(*subscription);
    };

    const auto outer = check(*subscription);

    EXPECT_EQ(joined(inner, outer).size(), 21u);
    EXPECT_EQ(subscription->files()->count(), 20u);
    EXPECT_THAT(check(*subscription), IsEmpty());
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AHookMayCheckAgainWhileMostItemsAreForgotten)
{
    writeFiles(20);
    subscription = watch(&subscriber);
    const auto last = nameOf(*subscription->files()->objectAtIndex(19));
    const auto files = subscription->files();
    for (const auto& file : *files) {
        if (nameOf(*file) != last)
            folder.rename("watched/" + nameOf(*file), "elsewhere/" + nameOf(*file));
    }
    folder.rename("watched/" + last, "watched/last");
    Words inner;
    int events = 0;
    ReportingItem::hook = [&](auto&, auto&) {
        if (++events == 19)
            inner = check(*subscription);
    };

    const auto outer = check(*subscription);

    EXPECT_EQ(joined(inner, outer).size(), 21u);
    EXPECT_THAT(names(subscription->files()), ElementsAre("last"));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AHookMayAskForALoadThatDoesNotRun)
{
    subscription = watch(&subscriber);
    folder.write("watched/a");
    atFirstEvent([&] { subscription->loadImmediately(); });

    subscription->checkDirectory();

    EXPECT_THAT(subscriber.words(), ElementsAre(ElementsAre("updated watched", "appeared a")));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AHookMayLetGoOfTheSubscription)
{
    folder.write("watched/a");
    subscription = watch(&subscriber);
    folder.write("watched/b");
    atFirstEvent([&] { subscription = nullptr; });

    auto* borrowed = subscription.get();
    borrowed->checkDirectory();

    EXPECT_THAT(subscriber.words(), ElementsAre(ElementsAre("updated watched", "appeared b")));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AHookMayMakeAnotherSubscriptionOfTheFolder)
{
    folder.write("watched/a");
    subscription = watch(&subscriber);
    folder.write("watched/b");
    Ref<ZEFDirectorySubscription> other;
    atFirstEvent([&] { other = watch(); });

    EXPECT_THAT(check(*subscription), ElementsAre("updated watched", "appeared b"));
    EXPECT_EQ(other->files()->count(), 2u);
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AnExceptionOfAHookPassesThroughAndLosesNoChange)
{
    folder.write("watched/a");
    subscription = watch(&subscriber);
    folder.rename("watched/a", "watched/b");
    folder.write("watched/new");
    atFirstEvent([] { throw std::runtime_error("hook"); });

    EXPECT_THROW(subscription->checkDirectory(), std::runtime_error);

    EXPECT_THAT(subscriber.words(),
        ElementsAre(ElementsAre("updated watched", "renamed b", "appeared new")));
    EXPECT_THAT(check(*subscription), IsEmpty());
}

// --- Several observers

TEST_F(ZEFDirectorySubscriptionRaceTest, TwoSubscriptionsOfAFolderBothReportEverything)
{
    folder.write("watched/a");
    auto one = watchObserved();
    auto other = watchObserved();
    folder.rename("watched/a", "watched/b");
    folder.write("watched/c");

    for (const auto& each : { one, other })
        EXPECT_THAT(check(*each), ElementsAre("updated watched", "renamed b", "appeared c"));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, TwoSubscriptionsOfAFolderBothReportItsMove)
{
    folder.write("watched/a");
    auto one = watchObserved();
    auto other = watchObserved();
    folder.rename("watched", "elsewhere/new");

    for (const auto& each : { one, other }) {
        EXPECT_THAT(check(*each), ElementsAre("moved new", "moved in parent a"));
        EXPECT_EQ(each->url(), folder.folderUrl("elsewhere/new"));
    }
}

TEST_F(ZEFDirectorySubscriptionRaceTest, AFirstQuestionIsAskedAgainstWhatIsKnownBefore)
{
    folder.write("watched/a");
    auto one = watch(&subscriber);
    auto other = watch(&subscriber);
    folder.rename("watched/a", "watched/b");

    EXPECT_THAT(check(*one), ElementsAre("updated watched", "renamed b"));
    // It never asked before somebody else found out about the new name.
    EXPECT_THAT(check(*other), Not(Contains("renamed b")));
}

TEST_F(ZEFDirectorySubscriptionRaceTest, OnlyTheFirstOfTwoSubscriptionsReportsALostFolder)
{
    auto one = watch(&subscriber);
    auto other = watch(&subscriber);
    folder.remove("watched");

    EXPECT_THAT(check(*one), ElementsAre("removed watched"));
    EXPECT_THAT(check(*other), IsEmpty());
    EXPECT_TRUE(other->isValid());
}

TEST_F(ZEFDirectorySubscriptionRaceTest, ASecondSubscriptionOfTheFolderCostsTheFirstNoChange)
{
    auto one = watch(&subscriber);
    folder.write("watched/a");

    auto other = watch(&subscriber);

    EXPECT_THAT(check(*one), ElementsAre("updated watched", "appeared a"));
    EXPECT_THAT(check(*other), IsEmpty());
}

} // namespace

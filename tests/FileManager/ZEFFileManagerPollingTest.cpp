// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/Platform/Objects/MutationError.h"

#include "tests/support/ManagerFixture.h"

#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// One poll of every subscription.
class ZEFFileManagerPollingTest : public ManagerFixture {
protected:
    /// Watches the folders a, b and c, each with a subscriber of its own.
    void watchThree()
    {
        makeFolders({ "a", "b", "c" });
        for (const auto* name : { "a", "b", "c" }) {
            auto& subscriber = newSubscriber();
            subscribers.push_back(&subscriber);
            subscriptions.push_back(subscribe(subscriber, name));
            subscriber.action = [this, name] { order.push_back(std::string("called ") + name); };
        }
        ReportingItem::hook = [this](
                                  auto&, const auto& record) { order.push_back(inWords(record)); };
    }

    /// Calls `work` at the first event that an item is sent.
    static void atFirstEvent(std::function<void()> work)
    {
        ReportingItem::hook = [work = std::move(work)](auto&, auto&) {
            ReportingItem::hook = nullptr;
            work();
        };
    }

    std::vector<RecordingSubscriber*> subscribers;
    std::vector<ZEFDirectorySubscription*> subscriptions;
    Words order;
};

TEST_F(ZEFFileManagerPollingTest, CallsNobodyWhenNothingChanged)
{
    watchThree();

    poll();

    EXPECT_THAT(order, IsEmpty());
}

TEST_F(ZEFFileManagerPollingTest, PollsAnEmptyListWithoutAWord)
{
    poll();
}

TEST_F(ZEFFileManagerPollingTest, CallsSubscribersInOrderOnlyAfterAllFoldersWerePolled)
{
    watchThree();
    folder.chmod("c", 0700);
    folder.chmod("a", 0700);

    poll();

    EXPECT_THAT(order, ElementsAre("updated a", "updated c", "called a", "called c"));
    EXPECT_THAT(subscribers[1]->calls, IsEmpty());
    EXPECT_THAT(subscribers[2]->words(), ElementsAre(ElementsAre("updated c")));
    EXPECT_EQ(subscribers[2]->calls[0].subscription, subscriptions[2]);
}

TEST_F(ZEFFileManagerPollingTest, GivesEachFolderItsOwnChangesOnly)
{
    watchThree();
    folder.write("a/x");
    folder.write("b/y");

    poll();
    poll();

    EXPECT_THAT(subscribers[0]->words(), ElementsAre(ElementsAre("updated a", "appeared x")));
    EXPECT_THAT(subscribers[1]->words(), ElementsAre(ElementsAre("updated b", "appeared y")));
    EXPECT_THAT(subscribers[2]->calls, IsEmpty());
}

TEST_F(ZEFFileManagerPollingTest, PollsAlsoWhilePausedWhenItIsAskedTo)
{
    watchThree();
    manager.pause();
    folder.write("a/x");

    poll();

    EXPECT_THAT(subscribers[0]->calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, PollsAllButAFolderThatIsStillLoading)
{
    manager.setAsynchronous(true);
    holdReaders();
    auto& subscriber = newSubscriber();
    auto* subscription = subscribe(subscriber);
    folder.write("watched/a");

    poll();
    EXPECT_THAT(subscriber.calls, IsEmpty());

    subscription->loadImmediately();
    EXPECT_THAT(subscriber.calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, ReportsAFileThatMovesBetweenTwoWatchedFolders)
{
    folder.makeFolder("a");
    folder.makeFolder("b");
    folder.write("a/x");
    auto& inA = newSubscriber();
    auto& inB = newSubscriber();
    subscribe(inA, "a");
    subscribe(inB, "b");
    folder.rename("a/x", "b/x");

    poll();

    EXPECT_THAT(inA.words(), ElementsAre(ElementsAre("updated a", "moved x")));
    EXPECT_THAT(inB.words(), ElementsAre(ElementsAre("updated b", "appeared x")));
}

TEST_F(ZEFFileManagerPollingTest, ReportsASubfolderToItselfAndToItsParent)
{
    folder.makeFolder("watched/sub");
    auto& inParent = newSubscriber();
    auto& inSub = newSubscriber();
    subscribe(inParent);
    subscribe(inSub, "watched/sub");
    folder.write("watched/sub/x");

    poll();

    EXPECT_THAT(inParent.words(), ElementsAre(ElementsAre("updated sub")));
    EXPECT_THAT(inSub.words(), ElementsAre(ElementsAre("updated sub", "appeared x")));
}

// --- Callbacks in the second phase

TEST_F(ZEFFileManagerPollingTest, SubscribersMaySubscribeAndUnsubscribe)
{
    watchThree();
    makeFolders({ "d" });
    auto& late = newSubscriber();
    folder.write("a/x");
    folder.write("b/x");
    folder.write("c/x");
    subscribers[0]->action = [&] {
        subscribe(late, "d");
        manager.unsubscribe(subscribers[1]);
    };

    poll();

    EXPECT_THAT(manager.subscriptions(), SizeIs(4));
    EXPECT_THAT(late.calls, IsEmpty());
    EXPECT_THAT(subscribers[1]->calls, IsEmpty());
    EXPECT_THAT(subscribers[2]->calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, ASubscriberMayLeaveALostFolderAndItIsDropped)
{
    watchThree();
    folder.remove("a");
    folder.write("b/x");
    subscribers[0]->action = [&] { manager.unsubscribe(subscribers[0]); };

    step(3);
    EXPECT_THAT(manager.subscriptions(), SizeIs(3));
    EXPECT_THAT(subscribers[1]->calls, SizeIs(1));

    step(0);
    EXPECT_THAT(manager.subscriptions(), SizeIs(2));
}

TEST_F(ZEFFileManagerPollingTest, ASubscriptionThatIsDroppedMeanwhileStillTellsItsOthers)
{
    watchThree();
    folder.remove("b");
    folder.write("a/x");
    subscribers[0]->action = [&] {
        subscriptions[1]->unsubscribe(subscribers[1]);
        manager.unsubscribe(subscribers[1]);
        subscriptions[1]->subscribe(subscribers[2]);
        loop.perform();
        EXPECT_FALSE(keeps(subscriptions[1]));
    };

    poll();

    EXPECT_THAT(subscribers[1]->calls, IsEmpty());
    EXPECT_THAT(subscribers[2]->words(), ElementsAre(ElementsAre("removed b")));
}

TEST_F(ZEFFileManagerPollingTest, SubscribersMayPollAgain)
{
    watchThree();
    folder.write("a/x");
    folder.write("b/x");
    subscribers[0]->action = [&] { poll(); };

    poll();

    EXPECT_THAT(subscribers[0]->calls, SizeIs(1));
    EXPECT_THAT(subscribers[1]->calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, SubscribersMayRunANestedLoop)
{
    watchThree();
    folder.write("a/x");
    subscribers[0]->action = [&] {
        folder.write("b/x");
        step(6);
    };

    step(3);
    step(3);

    EXPECT_THAT(subscribers[0]->calls, SizeIs(1));
    EXPECT_THAT(subscribers[1]->calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, AnExceptionPassesThroughAfterEverybodyWasCalled)
{
    watchThree();
    folder.write("a/x");
    folder.write("b/x");
    subscribers[0]->action = [] { throw std::runtime_error("subscriber"); };

    EXPECT_THROW(poll(), std::runtime_error);

    EXPECT_THAT(subscribers[1]->calls, SizeIs(1));
    EXPECT_NO_THROW(poll());
}

// --- Hooks in the first phase

TEST_F(ZEFFileManagerPollingTest, SubscribingToAnotherFolderInAHookIsAMutationError)
{
    watchThree();
    folder.write("a/x");
    folder.write("b/x");
    atFirstEvent([&] { subscribe(newSubscriber(), "elsewhere"); });

    EXPECT_THROW(poll(), zef::MutationError);

    EXPECT_THAT(manager.subscriptions(), SizeIs(4));
    EXPECT_NO_THROW(poll());
    EXPECT_THAT(subscribers[0]->words(), ElementsAre(ElementsAre("updated a", "appeared x")));
    EXPECT_THAT(subscribers[1]->words(), ElementsAre(ElementsAre("updated b", "appeared x")));
}

TEST_F(ZEFFileManagerPollingTest, DroppingASubscriptionInAHookIsAMutationError)
{
    watchThree();
    manager.unsubscribe(subscribers[2]);
    folder.write("a/x");
    folder.write("b/x");
    atFirstEvent([&] {
        manager.pause(); // so that the nested pass only drops
        step(30);
    });

    EXPECT_THROW(poll(), zef::MutationError);

    EXPECT_THAT(manager.subscriptions(), SizeIs(2));
    EXPECT_NO_THROW(poll());
    EXPECT_THAT(subscribers[0]->calls, SizeIs(1));
    EXPECT_THAT(subscribers[1]->calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, AMutationErrorLeavesThePollingTimerRunning)
{
    watchThree();
    folder.write("a/x");
    atFirstEvent([&] { subscribe(newSubscriber(), "elsewhere"); });
    EXPECT_THROW(step(3), zef::MutationError);

    folder.write("c/x");
    step(3);

    EXPECT_THAT(subscribers[2]->calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, HooksMaySubscribeToAKnownFolderAndUnsubscribe)
{
    watchThree();
    folder.write("a/x");
    auto& late = newSubscriber();
    atFirstEvent([&] {
        subscribe(late, "a");
        manager.unsubscribe(subscribers[0]);
    });

    EXPECT_NO_THROW(poll());

    EXPECT_THAT(subscribers[0]->calls, IsEmpty());
    EXPECT_THAT(late.calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, AnExceptionOfAHookPassesThroughAndLosesNoChange)
{
    watchThree();
    folder.write("a/x");
    folder.write("b/x");
    atFirstEvent([] { throw std::runtime_error("hook"); });

    EXPECT_THROW(poll(), std::runtime_error);

    EXPECT_THAT(subscribers[0]->words(), ElementsAre(ElementsAre("updated a", "appeared x")));
    EXPECT_THAT(subscribers[1]->calls, SizeIs(1));
}

TEST_F(ZEFFileManagerPollingTest, AHookMayShutTheManagerDown)
{
    watchThree();
    folder.write("a/x");
    atFirstEvent([&] { manager.shutdown(); });

    poll();

    EXPECT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "tests/support/AsynchronousLoaderFixture.h"
#include "tests/support/BlockOperation.h"
#include "tests/support/ZEFDirectorySubscriptionTestAccess.h"

#include <atomic>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::makeRef;
using zef::Ref;
using Access = ZEFDirectorySubscriptionTestAccess;

/// A host's file item that shuts the file manager down when it goes.
class FarewellItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    inline static int liveCount = 0;

    FarewellItem(const zef::FileURL& url, const zef::FSRef* fsRef, const zef::FileURL& pathRep,
        const zef::Stat* statInfo)
        : ZEFFileItem(url, fsRef, pathRep, statInfo)
    {
        ++liveCount;
    }

private:
    ~FarewellItem() override
    {
        --liveCount;
        ZEFFileManager::defaultFileManager()->shutdown();
    }
};

const ZEFFileItemClass FarewellItem::classObject(
    "FarewellItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<FarewellItem>);

/// The end of the file manager's service while folders are loaded: each load on a thread of the
/// queue waits at the gate before every batch of 40 files.
class ZEFFileManagerShutdownLoadsTest : public AsynchronousLoaderFixture {
protected:
    ZEFFileManagerShutdownLoadsTest()
    {
        manager.setFileClass(&ReportingItem::classObject);
        manager.setAsynchronous(true);
        holdReaders();
    }

    ~ZEFFileManagerShutdownLoadsTest() override
    {
        subscriber.action = nullptr;
        subscriber.calls.clear();
    }

    ZEFDirectorySubscription& subscribe(std::string_view name)
    {
        return *manager.subscribeForURL(&subscriber, folder.folderUrl(name));
    }

    /// One load at once from now on: those that come later wait.
    void runOneLoadAtOnce() { loads->setMaxConcurrentOperationCount(1); }

    /// Shuts down; what waits at the gate goes on as soon as the queues are suspended.
    void shutdownAndOpen()
    {
        openWhenSuspended();
        manager.shutdown();
        _opener.join();
    }

    void openWhenSuspended()
    {
        _opener = std::thread([this, queue = utilities] {
            while (!queue->isSuspended())
                std::this_thread::yield();
            gate.open();
        });
    }

    void joinOpener() { _opener.join(); }

    ZEFFileManager& manager = *ZEFFileManager::defaultFileManager();
    Ref<zef::OperationQueue> loads = manager.operationQueue();
    Ref<zef::OperationQueue> utilities = manager.utilityQueue();
    RecordingSubscriber& subscriber = newSubscriber();

private:
    std::thread _opener;
};

TEST_F(ZEFFileManagerShutdownLoadsTest, WaitsForALoadThatWasCancelledAndHasNotNoticed)
{
    writeFiles(100);
    auto& subscription = subscribe("watched");
    const Ref<ZEFFileLoadOperation> load = Access::loadOperation(subscription);
    gate.awaitArrival();
    subscription.loadImmediately();
    ASSERT_TRUE(load->isCancelled());
    ASSERT_FALSE(load->isFinished());

    shutdownAndOpen();

    EXPECT_TRUE(load->isFinished());
    EXPECT_LT(load->loadingArray()->count(), 100u);
    EXPECT_EQ(catalog.iteratorCount, 0);
    step(1);
    EXPECT_THAT(subscriber.calls, SizeIs(1));
}

TEST_F(ZEFFileManagerShutdownLoadsTest, NeverBeginsACancelledLoadThatWaits)
{
    folder.write("elsewhere/a");
    runOneLoadAtOnce();
    loader->startWithDirectory(item("watched"));
    gate.awaitArrival();
    auto& subscription = subscribe("elsewhere");
    const Ref<ZEFFileLoadOperation> waiting = Access::loadOperation(subscription);
    subscription.loadImmediately();
    ASSERT_TRUE(waiting->isCancelled());
    const int opened = catalog.openCount;

    shutdownAndOpen();

    EXPECT_EQ(catalog.openCount, opened);
    EXPECT_TRUE(waiting->loadingArray()->isEmpty());
}

TEST_F(ZEFFileManagerShutdownLoadsTest, ALoaderWhoseLoadRanTellsItsDelegateAfterwards)
{
    writeFiles(3);
    startWithWatched();
    gate.awaitArrival();

    shutdownAndOpen();

    EXPECT_THAT(delegate->calls, IsEmpty());
    tick();
    EXPECT_THAT(delegate->calls, ElementsAre("3", "finished with 3"));
    EXPECT_TRUE(loader->isComplete());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFFileManagerShutdownLoadsTest, ALoaderThatWasCancelledTellsNothing)
{
    writeFiles(100);
    startWithWatched();
    gate.awaitArrival();
    loader->cancel();

    shutdownAndOpen();
    tick();

    EXPECT_THAT(delegate->calls, IsEmpty());
    EXPECT_FALSE(loader->isLoading());
    EXPECT_EQ(catalog.iteratorCount, 0);
}

TEST_F(ZEFFileManagerShutdownLoadsTest, ALoaderCanBeCancelledAfterwards)
{
    runOneLoadAtOnce();
    writeFiles(3);
    loader->startWithDirectory(item("elsewhere"));
    gate.awaitArrival();
    const auto waiting = makeRef<ZEFAsynchronousFileLoader>(delegate.get());
    waiting->startWithDirectory(item("watched"));

    shutdownAndOpen();
    waiting->cancel();
    tick();

    EXPECT_THAT(delegate->calls, ElementsAre("0", "finished with 0"));
    EXPECT_FALSE(waiting->isLoading());
    EXPECT_FALSE(waiting->isComplete());
}

TEST_F(ZEFFileManagerShutdownLoadsTest, EndsLoadsOfEveryKindAtOnceAndTheSecondTimeNothing)
{
    writeFiles(100);
    folder.makeFolder("elsewhere/sub");
    loads->setMaxConcurrentOperationCount(2);
    auto& cancelled = subscribe("watched");
    const Ref<ZEFFileLoadOperation> beingCancelled = Access::loadOperation(cancelled);
    startWithWatched();
    gate.awaitArrival();
    gate.awaitArrival();
    cancelled.loadImmediately();
    const Ref<ZEFFileLoadOperation> waiting = Access::loadOperation(subscribe("elsewhere"));
    const auto waitingLoader = makeRef<ZEFAsynchronousFileLoader>(delegate.get());
    waitingLoader->startWithDirectory(item("elsewhere/sub"));
    std::atomic<bool> ran{ false };
    utilities->setMaxConcurrentOperationCount(1);
    utilities->addOperation(makeRef<BlockOperation>([this] { gate.pass(); }));
    gate.awaitArrival();
    utilities->addOperation(makeRef<BlockOperation>([&] { ran = true; }));

    shutdownAndOpen();
    manager.shutdown();

    loads = nullptr;
    utilities = nullptr;
    EXPECT_TRUE(beingCancelled->isFinished());
    EXPECT_TRUE(waiting->isCancelled());
    EXPECT_TRUE(waiting->loadingArray()->isEmpty());
    EXPECT_FALSE(ran);
    EXPECT_EQ(catalog.iteratorCount, 0);
    tick();
    EXPECT_THAT(delegate->calls, ElementsAre("100", "finished with 100", "0", "finished with 0"));
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    EXPECT_THAT(subscriber.calls, SizeIs(1));
    // Outlives its subscription on purpose.
    waiting->release();
}

TEST_F(ZEFFileManagerShutdownLoadsTest, NeverRunsWhatARunningOperationAdds)
{
    std::atomic<bool> ran{ false };
    loads->addOperation(makeRef<BlockOperation>([&, queue = loads.get()] {
        gate.pass();
        queue->addOperation(makeRef<BlockOperation>([&] { ran = true; }));
    }));
    gate.awaitArrival();

    shutdownAndOpen();

    loads = nullptr;
    EXPECT_FALSE(ran);
}

TEST_F(ZEFFileManagerShutdownLoadsTest, MayHappenWhileALoadIsReported)
{
    writeFiles(100);
    subscribe("watched");
    gate.awaitArrival();
    gate.letOneThrough();
    gate.awaitArrival();
    subscriber.action = [this] { manager.shutdown(); };
    openWhenSuspended();

    step(0.5);

    joinOpener();
    EXPECT_THAT(manager.subscriptions(), IsEmpty());
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
    // The look at the load that called the subscriber goes on to its end, the last.
    ASSERT_THAT(subscriber.calls, SizeIs(3));
    EXPECT_EQ(subscriber.calls[0].changes->count(), 40u);
    EXPECT_EQ(subscriber.calls[1].changes->count(), 60u);
    step(10);
    EXPECT_THAT(subscriber.calls, SizeIs(3));
}

TEST_F(ZEFFileManagerShutdownLoadsTest, MayHappenInALoadersProgressMessage)
{
    writeFiles(100);
    startWithWatched();
    gate.awaitArrival();
    delegate->atProgress = [this](auto&) { manager.shutdown(); };
    openWhenSuspended();

    tick();

    joinOpener();
    EXPECT_THAT(delegate->calls, ElementsAre("0", "finished with 100"));
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFFileManagerShutdownLoadsTest, MayHappenInALoadersLastMessage)
{
    writeFiles(3);
    startWithWatched();
    delegate->atEnd = [this](auto&) { manager.shutdown(); };

    finish();

    EXPECT_THAT(delegate->calls, ElementsAre("3", "finished with 3"));
    EXPECT_EQ(manager.operationQueue(), nullptr);
}

TEST_F(ZEFFileManagerShutdownLoadsTest, MayBeCalledOnceMoreByWhatItLetsGoOf)
{
    manager.setFileClass(&FarewellItem::classObject);
    manager.setAsynchronous(false);
    folder.write("watched/a");
    subscribe("watched");
    ASSERT_EQ(FarewellItem::liveCount, 2);

    manager.shutdown();

    EXPECT_EQ(FarewellItem::liveCount, 0);
    EXPECT_EQ(manager.utilityQueue(), nullptr);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/LoopFixture.h"

#include <limits>
#include <thread>

namespace {

using testing::Each;
using testing::IsEmpty;
using zef::Ref;

/// The one file manager: how it comes to be, what it begins with, its queues and its file class.
class ZEFFileManagerTest : public LoopFixture {
protected:
    static ZEFFileManager& manager() { return *ZEFFileManager::defaultFileManager(); }

    /// Whether the file class can still be set.
    static bool acceptsFileClass() { return manager().setFileClass(&ReportingItem::classObject); }
};

// --- There is one

TEST_F(ZEFFileManagerTest, IsTheSameObjectEachTime)
{
    EXPECT_EQ(ZEFFileManager::defaultFileManager(), ZEFFileManager::defaultFileManager());
}

TEST_F(ZEFFileManagerTest, IsTheSameObjectOnEveryThread)
{
    std::vector<ZEFFileManager*> found(8);
    std::vector<std::thread> threads;
    for (auto& each : found)
        threads.emplace_back([&each] { each = ZEFFileManager::defaultFileManager(); });
    for (auto& thread : threads)
        thread.join();

    EXPECT_THAT(found, Each(&manager()));
}

TEST_F(ZEFFileManagerTest, IsMadeWholeByTheFirstAlloc)
{
    auto* made = ZEFFileManager::alloc();

    ASSERT_TRUE(made);
    EXPECT_TRUE(made->operationQueue());
    EXPECT_EQ(made->init(), made);
    EXPECT_EQ(ZEFFileManager::defaultFileManager(), made);
}

TEST_F(ZEFFileManagerTest, CantBeAllocatedAgain)
{
    manager();

    EXPECT_EQ(ZEFFileManager::alloc(), nullptr);
}

TEST_F(ZEFFileManagerTest, InitChangesNothing)
{
    manager().setPollingInterval(5);
    auto* queue = manager().operationQueue();

    EXPECT_EQ(manager().init(), &manager());

    EXPECT_EQ(manager().pollingInterval(), 5.0F);
    EXPECT_EQ(manager().operationQueue(), queue);
    manager().ZEF_killTimer();
}

TEST_F(ZEFFileManagerTest, CantBeFreed)
{
    auto& first = manager();

    EXPECT_EQ(first.retainCount(), 4294967295u);
    first.release();
    first.release();
    first.retain();

    EXPECT_EQ(first.retainCount(), 4294967295u);
    EXPECT_EQ(&manager(), &first);
}

TEST_F(ZEFFileManagerTest, IsItsOwnCopy)
{
    EXPECT_EQ(manager().copy(), &manager());
}

TEST_F(ZEFFileManagerTest, KnowsItsClass)
{
    EXPECT_EQ(&manager().objectClass(), &ZEFFileManager::classObject);
}

// --- What it begins with

TEST_F(ZEFFileManagerTest, BeginsWithItsDefaults)
{
    EXPECT_EQ(manager().pollingInterval(), 3.0F);
    EXPECT_FALSE(manager().asynchronous());
    EXPECT_FALSE(manager().isPaused());
    EXPECT_EQ(manager().fileClass(), &ZEFFileItem::classObject);
    EXPECT_THAT(manager().subscriptions(), IsEmpty());
    EXPECT_EQ(ZEFFileManagerTestAccess::releaseTimerCount(), 0u);
}

TEST_F(ZEFFileManagerTest, BeginsWithoutATimer)
{
    manager();

    EXPECT_EQ(loop.secondsUntilNextTimer(), std::numeric_limits<double>::infinity());
}

TEST_F(ZEFFileManagerTest, LoadsAtMostSixtyFourFoldersAtOnce)
{
    EXPECT_EQ(manager().operationQueue()->maxConcurrentOperationCount(), 64u);
    EXPECT_FALSE(manager().operationQueue()->isSuspended());
}

TEST_F(ZEFFileManagerTest, OffersAQueueForFourOperationsForEachProcessor)
{
    auto* queue = manager().utilityQueue();

    EXPECT_NE(queue, manager().operationQueue());
    EXPECT_EQ(queue->maxConcurrentOperationCount(), 4 * zef::onlineProcessorCount());
    EXPECT_FALSE(queue->isSuspended());
}

// --- The file class

TEST_F(ZEFFileManagerTest, TakesAnotherFileClassAnyNumberOfTimesAtFirst)
{
    EXPECT_TRUE(manager().setFileClass(&ReportingItem::classObject));
    EXPECT_EQ(manager().fileClass(), &ReportingItem::classObject);

    EXPECT_TRUE(manager().setFileClass(&ZEFFileItem::classObject));
    EXPECT_EQ(manager().fileClass(), &ZEFFileItem::classObject);
}

TEST_F(ZEFFileManagerTest, TakesNilForAFileClassAndThenMakesNoFiles)
{
    EXPECT_TRUE(manager().setFileClass(nullptr));
    EXPECT_EQ(manager().fileClass(), nullptr);

    auto& subscriber = newSubscriber();
    EXPECT_EQ(manager().subscribeForPath(&subscriber, folder.path("watched")), nullptr);
    EXPECT_EQ(manager().subscribeForURL(&subscriber, folder.folderUrl("watched")), nullptr);
    manager().unsubscribeForPath(&subscriber, folder.path("watched"));
    manager().unsubscribeForURL(&subscriber, folder.folderUrl("watched"));
}

TEST_F(ZEFFileManagerTest, FreezesTheFileClassWithASubscriptionForAPath)
{
    manager().subscribeForPath(&newSubscriber(), folder.path("watched"));

    EXPECT_FALSE(acceptsFileClass());
    EXPECT_EQ(manager().fileClass(), &ZEFFileItem::classObject);
}

TEST_F(ZEFFileManagerTest, FreezesTheFileClassWithASubscriptionForAURL)
{
    manager().subscribeForURL(&newSubscriber(), folder.folderUrl("watched"));

    EXPECT_FALSE(acceptsFileClass());
}

TEST_F(ZEFFileManagerTest, FreezesTheFileClassWithASubscriptionForAFile)
{
    manager().subscribeForFile(&newSubscriber(), item("watched").get());

    EXPECT_FALSE(acceptsFileClass());
}

TEST_F(ZEFFileManagerTest, FreezesTheFileClassEvenWhenThePathOrTheURLLeadsToNoFile)
{
    EXPECT_EQ(manager().subscribeForPath(&newSubscriber(), folder.path("missing")), nullptr);
    EXPECT_FALSE(acceptsFileClass());

    ZEFFileManagerTestAccess::forgetInstance();
    EXPECT_EQ(manager().subscribeForURL(&newSubscriber(), nullptr), nullptr);
    EXPECT_FALSE(acceptsFileClass());
}

TEST_F(ZEFFileManagerTest, FreezesTheFileClassWithAnUnsubscriptionForAPath)
{
    manager().unsubscribeForPath(&newSubscriber(), folder.path("watched"));

    EXPECT_FALSE(acceptsFileClass());
}

TEST_F(ZEFFileManagerTest, FreezesTheFileClassWithAnUnsubscriptionForAURL)
{
    manager().unsubscribeForURL(&newSubscriber(), folder.folderUrl("watched"));

    EXPECT_FALSE(acceptsFileClass());
}

TEST_F(ZEFFileManagerTest, FreezesTheFileClassWithNothingElse)
{
    auto directory = item("watched");
    auto& subscriber = newSubscriber();
    auto throwAway = ZEFDirectorySubscription::initForSubscriber(nullptr, directory.get());

    EXPECT_EQ(manager().subscribeForFile(&subscriber, nullptr), nullptr);
    manager().unsubscribeForFile(&subscriber, directory.get());
    manager().unsubscribeForFile(&subscriber, nullptr);
    manager().unsubscribeForSubscription(&subscriber, throwAway.get());
    manager().unsubscribeForSubscription(&subscriber, nullptr);
    manager().unsubscribe(&subscriber);
    manager().subscriptionForFile(directory.get());
    manager().checkFilesystem(nullptr);

    EXPECT_TRUE(acceptsFileClass());
}

TEST_F(ZEFFileManagerTest, MakesFilesOfItsFileClass)
{
    manager().setFileClass(&ReportingItem::classObject);

    const auto* byPath = manager().subscribeForPath(&newSubscriber(), folder.path("watched"));

    EXPECT_EQ(&byPath->directoryFile()->objectClass(), &ReportingItem::classObject);
}

// --- One thread

#ifndef NDEBUG
using ZEFFileManagerDeathTest = ZEFFileManagerTest;

TEST_F(ZEFFileManagerDeathTest, PollingOnASecondThreadIsAProgrammingError)
{
    manager().setPaused(true);

    EXPECT_DEATH(std::thread([] { manager().checkFilesystem(nullptr); }).join(), "isOnItsThread");
}
#endif

TEST_F(ZEFFileManagerTest, HandsOutItsQueuesOnEveryThread)
{
    manager().setPaused(true);

    bool areThere = false;
    std::thread([&] { areThere = manager().operationQueue() && manager().utilityQueue(); }).join();

    EXPECT_TRUE(areThere);
}

} // namespace

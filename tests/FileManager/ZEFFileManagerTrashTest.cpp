// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "tests/support/DiskCalls.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/FakeTrash.h"
#include "tests/support/ManagerFixture.h"

#include <cerrno>

namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::TrashOutcome;

constexpr double pause = 0.3;

class ZEFFileManagerTrashTest : public ManagerFixture {
protected:
    zef::Ref<ZEFFileItemArray> array(std::initializer_list<zef::Ref<ZEFFileItem>> items)
    {
        const auto made = zef::makeRef<ZEFFileItemArray>();
        for (const auto& each : items)
            made->addObject(each);
        return made;
    }

    zef::Ref<ZEFFileItem> newItem(std::string_view name)
    {
        folder.write(name);
        return item(name);
    }

    /// An item that was found lost.
    zef::Ref<ZEFFileItem> lostItem()
    {
        auto lost = newItem("lost");
        folder.remove("lost");
        EXPECT_FALSE(lost->currentURL());
        return lost;
    }

    /// How much time passes meanwhile.
    template <typename Work> double duration(Work&& work)
    {
        const double begin = clock.monotonicSeconds();
        work();
        return clock.monotonicSeconds() - begin;
    }

    EnvironmentVariable dataHome{ "XDG_DATA_HOME", folder.path("data") };
};

TEST_F(ZEFFileManagerTrashTest, TakesNoArrayForDoneAndWaitsAndPollsToo)
{
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    folder.write("watched/new");

    const auto time = duration([&] { EXPECT_TRUE(manager.moveFilesToTrash(nullptr)); });

    EXPECT_NEAR(time, pause, 1e-9);
    EXPECT_THAT(subscriber.calls, SizeIs(1));
    EXPECT_TRUE(manager.ZEF_moveFilesToTrash(nullptr));
}

TEST_F(ZEFFileManagerTrashTest, WaitsAndPollsAlsoAfterAnEmptyArray)
{
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    folder.write("watched/new");
    FakeTrash trash;

    const auto time = duration([&] { EXPECT_TRUE(manager.moveFilesToTrash(array({}).get())); });

    EXPECT_NEAR(time, pause, 1e-9);
    EXPECT_THAT(subscriber.calls, SizeIs(1));
    EXPECT_THAT(trash.requests, IsEmpty());
}

TEST_F(ZEFFileManagerTrashTest, TheMoveAloneNeitherWaitsNorPolls)
{
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    const auto file = newItem("watched/new");
    FakeTrash trash;

    const auto time = duration(
        [&] { EXPECT_TRUE(manager.ZEF_moveFilesToTrash(array({ file }).get())); });

    EXPECT_EQ(time, 0);
    EXPECT_THAT(subscriber.calls, IsEmpty());
    EXPECT_THAT(trash.requests, SizeIs(1));
}

TEST_F(ZEFFileManagerTrashTest, AsksForAllFilesAtOnceInTheirOrder)
{
    const auto one = newItem("one");
    const auto two = newItem("two");
    FakeTrash trash;

    EXPECT_TRUE(manager.moveFilesToTrash(array({ two, one }).get()));

    ASSERT_THAT(trash.requests, ElementsAre(SizeIs(2)));
    EXPECT_TRUE(trash.requests[0][0].ref.hasNumbersOf(*two->fsRef()));
    EXPECT_EQ(trash.requests[0][0].lastKnown, two->url());
    EXPECT_TRUE(trash.requests[0][1].ref.hasNumbersOf(*one->fsRef()));
}

TEST_F(ZEFFileManagerTrashTest, AsksForNothingWhenAnItemHasNoReference)
{
    const auto good = newItem("good");
    const auto files = array({ good, lostItem() });
    FakeTrash trash;

    const auto time = duration([&] { EXPECT_FALSE(manager.moveFilesToTrash(files.get())); });

    EXPECT_EQ(time, 0);
    EXPECT_THAT(trash.requests, IsEmpty());
    EXPECT_EQ(manager.lastTrashRefusal().index, 1u);
    EXPECT_EQ(manager.lastTrashRefusal().error, ENOENT);
    EXPECT_FALSE(manager.lastTrashRefusal().reason.empty());
}

TEST_F(ZEFFileManagerTrashTest, AsksForNothingWhenThereIsANilInTheArray)
{
    FakeTrash trash;

    EXPECT_FALSE(manager.moveFilesToTrash(array({ newItem("good"), nullptr }).get()));

    EXPECT_THAT(trash.requests, IsEmpty());
    EXPECT_EQ(manager.lastTrashRefusal().index, 1u);
}

TEST_F(ZEFFileManagerTrashTest, IsSilentAboutARefusal)
{
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    const auto file = newItem("watched/new");
    FakeTrash trash;
    trash.outcome = TrashOutcome::refused;
    trash.answer = { .index = 0, .error = EACCES, .reason = "Permission denied" };

    const auto time = duration(
        [&] { EXPECT_FALSE(manager.moveFilesToTrash(array({ file }).get())); });

    EXPECT_EQ(time, 0);
    EXPECT_THAT(subscriber.calls, IsEmpty());
    EXPECT_EQ(manager.lastTrashRefusal().reason, "Permission denied");
}

TEST_F(ZEFFileManagerTrashTest, LogsTheNumberOfAMoveThatFailed)
{
    const auto file = newItem("new");
    FakeTrash trash;
    trash.outcome = TrashOutcome::failed;
    trash.answer = { .index = 0, .error = EACCES, .reason = "Permission denied" };

    const auto time = duration(
        [&] { EXPECT_FALSE(manager.moveFilesToTrash(array({ file }).get())); });

    EXPECT_EQ(time, 0);
    EXPECT_THAT(log.lines(), ElementsAre("Move to trash produced error -5000"));
    log.clear();
}

TEST_F(ZEFFileManagerTrashTest, ForgetsARefusalWithTheNextRequest)
{
    manager.moveFilesToTrash(array({ lostItem() }).get());
    ASSERT_NE(manager.lastTrashRefusal().error, 0);

    manager.moveFilesToTrash(nullptr);

    EXPECT_EQ(manager.lastTrashRefusal().error, 0);
    EXPECT_EQ(manager.lastTrashRefusal().reason, "");
}

TEST_F(ZEFFileManagerTrashTest, TellsSubscribersOfTheFilesThatWent)
{
    const auto file = newItem("watched/a");
    auto& subscriber = newSubscriber();
    subscribe(subscriber);

    EXPECT_TRUE(manager.moveFilesToTrash(array({ file }).get()));

    EXPECT_TRUE(folder.exists("data/Trash/files/a"));
    ASSERT_THAT(subscriber.calls, SizeIs(1));
    EXPECT_THAT(subscriber.words(),
        ElementsAre(testing::Contains(AnyOf("moved a", "removed a", "removed watched/a"))));
}

TEST_F(ZEFFileManagerTrashTest, PollsAlsoWhilePaused)
{
    const auto file = newItem("watched/a");
    auto& subscriber = newSubscriber();
    subscribe(subscriber);
    manager.pause();

    EXPECT_TRUE(manager.moveFilesToTrash(array({ file }).get()));

    EXPECT_THAT(subscriber.calls, SizeIs(1));
    EXPECT_TRUE(manager.isPaused());
}

TEST_F(ZEFFileManagerTrashTest, MovesWhereverAnItemsFileIsNow)
{
    const auto file = newItem("watched/a");
    file->ZEF_keepReference();
    folder.rename("watched/a", "watched/b");

    EXPECT_TRUE(manager.moveFilesToTrash(array({ file }).get()));

    EXPECT_TRUE(folder.exists("data/Trash/files/b"));
    // Without privileges and descriptors nothing leads to a file in a folder that nobody knows.
    const auto now = file->currentURL();
    EXPECT_TRUE(!now || now.lastPathComponent() == "b");
    if (zef::Locator::shared().descriptorBudget()) {
        EXPECT_TRUE(now);
    }
}

TEST_F(ZEFFileManagerTrashTest, MovesNothingOfARequestWithAFileThatIsGone)
{
    const auto good = newItem("good");
    const auto gone = newItem("gone");
    folder.remove("gone");

    EXPECT_FALSE(manager.moveFilesToTrash(array({ good, gone }).get()));

    EXPECT_TRUE(folder.exists("good"));
    EXPECT_FALSE(folder.exists("data/Trash/files/good"));
    EXPECT_EQ(manager.lastTrashRefusal().index, 1u);
}

TEST_F(ZEFFileManagerTrashTest, LogsAMoveThatTheDiskRefuses)
{
    const auto one = newItem("one");
    const auto two = newItem("two");
    DiskCalls disk;
    disk.answer = [](const std::string& call) {
        return call == "move two" ? std::optional(EIO) : std::nullopt;
    };

    EXPECT_FALSE(manager.moveFilesToTrash(array({ one, two }).get()));

    EXPECT_THAT(log.lines(), ElementsAre("Move to trash produced error -36"));
    log.clear();
    EXPECT_TRUE(folder.exists("one") && folder.exists("two"));
    EXPECT_EQ(manager.lastTrashRefusal().index, 1u);
    EXPECT_EQ(manager.lastTrashRefusal().error, EIO);
}

TEST_F(ZEFFileManagerTrashTest, MovesFilesAlsoAfterShutdown)
{
    const auto file = newItem("a");
    manager.shutdown();

    EXPECT_TRUE(manager.moveFilesToTrash(array({ file }).get()));

    EXPECT_TRUE(folder.exists("data/Trash/files/a"));
}

} // namespace

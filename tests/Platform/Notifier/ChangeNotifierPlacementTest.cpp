// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "tests/support/NotifierFixture.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace {

// Where the watch really is when paths change hands.
class ChangeNotifierPlacementTest : public NotifierFixture {
protected:
    ChangeNotifierPlacementTest()
    {
        folder.write("a");
        folder.write("b");
        refOfA = ref("a");
    }

    // Opens a token for the file "a" while "b" stands in its place, so that the watch is on "b".
    Watched openWhileSwapped()
    {
        folder.exchange("a", "b");
        return open(refOfA, folder.url("a"));
    }

    zef::FSRef refOfA;
};

TEST_F(ChangeNotifierPlacementTest, MovesTheWatchToTheObjectThatHasItsPathAgain)
{
    const auto file = openWhileSwapped();
    folder.exchange("a", "b");

    EXPECT_EQ(poll(file), 1) << "something may have been missed";
    EXPECT_EQ(poll(file), 0);
    folder.append("b", "more");
    EXPECT_EQ(poll(file), 0);
    folder.append("a", "more");
    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(notifier.watchCount(), 1u);
    EXPECT_FALSE(notifier.comparesStamps(file.token));
}

TEST_F(ChangeNotifierPlacementTest, MovesTheWatchToWhereTheLocatorFindsTheObject)
{
    const auto file = openWhileSwapped();
    locator.setAnswer(folder.url("b"));

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
    folder.append("a", "more");
    EXPECT_EQ(poll(file), 0);
    folder.append("b", "more");
    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(locator.locateCount(), 1);
}

TEST_F(ChangeNotifierPlacementTest, FollowsAFileRenamedBeforeTheFirstPoll)
{
    const auto file = open("a");
    locator.setAnswer(folder.rename("a", "c"));

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
    folder.append("c", "more");
    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierPlacementTest, DoesNotAskTheLocatorWhileThePathIsRight)
{
    openVerified("a");

    EXPECT_EQ(locator.locateCount(), 0);
}

TEST_F(ChangeNotifierPlacementTest, ReportsAFileDeletedBeforeTheFirstPollOnce)
{
    const auto file = open("a");
    folder.remove("a");

    EXPECT_EQ(poll(file), 1);
    EXPECT_TRUE(notifier.comparesStamps(file.token));
    EXPECT_EQ(poll(file), 0);
    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierPlacementTest, ReportsAFileReplacedBeforeTheFirstPoll)
{
    const auto file = open("a");
    folder.rename("b", "a");

    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierPlacementTest, OpensAFileWhereTheLocatorFindsIt)
{
    locator.setAnswer(folder.rename("a", "c"));
    const auto file = open(refOfA, folder.url("a"));

    EXPECT_EQ(locator.locateCount(), 1);
    EXPECT_EQ(poll(file), 0);
    folder.append("c", "more");
    EXPECT_EQ(poll(file), 1);
    EXPECT_FALSE(notifier.comparesStamps(file.token));
}

TEST_F(ChangeNotifierPlacementTest, OpensAFileThatNobodyKnewTheUrlOf)
{
    locator.setAnswer(folder.url("a"));
    const auto file = open(refOfA, nullptr);

    EXPECT_GT(file.token, 0);
    folder.append("a", "more");
    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierPlacementTest, GivesNoTokenForAFileThatIsGone)
{
    folder.remove("a");

    EXPECT_EQ(open(refOfA, folder.url("a")).token, 0);
    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierPlacementTest, FindsAFolderWhosePathAFileTook)
{
    folder.makeFolder("folder");
    const auto reference = ref("folder");
    locator.setAnswer(folder.rename("folder", "moved"));
    folder.write("folder");

    const auto watched = open(reference, folder.url("folder"));

    EXPECT_EQ(poll(watched), 0);
    folder.write("moved/new");
    EXPECT_EQ(poll(watched), 1);
}

// The system's files, which somebody changes right after the first look at one of them.
class MeddledFileSystem final : public zef::FileSystem {
public:
    explicit MeddledFileSystem(std::function<void()> meddle)
        : _meddle(std::move(meddle))
    {
        replaceShared(this);
    }
    ~MeddledFileSystem() override { replaceShared(nullptr); }

    int statLink(const char* path, zef::Stat& stat) override
    {
        const int error = system().statLink(path, stat);
        if (auto meddle = std::exchange(_meddle, nullptr))
            meddle();
        return error;
    }

    bool exists(const char* path) override { return system().exists(path); }
    zef::FileHandle handle(const char* path) override { return system().handle(path); }

private:
    std::function<void()> _meddle;
};

TEST_F(ChangeNotifierPlacementTest, LooksAgainWhenThePathIsTakenDuringVerification)
{
    const auto file = openWhileSwapped();
    folder.exchange("a", "b");
    folder.write("c");
    locator.setAnswer(folder.url("b"));
    {
        // The path leads to "a" at the look, and to "c" when the watch is made.
        MeddledFileSystem meddled([this] {
            folder.rename("a", "b");
            folder.rename("c", "a");
        });
        EXPECT_EQ(poll(file), 1);
    }

    EXPECT_EQ(poll(file), 0);
    folder.append("a", "more");
    EXPECT_EQ(poll(file), 0);
    folder.append("b", "more");
    EXPECT_EQ(poll(file), 1);
    EXPECT_FALSE(notifier.comparesStamps(file.token));
}

TEST_F(ChangeNotifierPlacementTest, LeavesTheWatchOfAFolderWholeThatTookAFilesPath)
{
    folder.makeFolder("folder");
    const auto watched = openVerified("folder");

    folder.exchange("a", "folder");
    EXPECT_EQ(poll(watched), 1);
    const auto file = open(refOfA, folder.url("a"));
    EXPECT_EQ(notifier.watchCount(), 1u) << "the file's token is on the folder";

    folder.write("a/new");
    EXPECT_EQ(poll(watched), 1);
    notifier.close(file.token);
    folder.write("a/newer");
    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierPlacementTest, KeepsLookingForAnObjectThatCanNotBeReached)
{
    const auto file = open("a");
    folder.rename("a", "c");
    locator.setAnswer(folder.url("nowhere"));

    EXPECT_EQ(poll(file), 1);
    EXPECT_TRUE(notifier.comparesStamps(file.token));
    EXPECT_EQ(poll(file), 0);

    folder.rename("c", "a");
    EXPECT_EQ(poll(file), 1) << "there again";
}

TEST_F(ChangeNotifierPlacementTest, ComparesStampsWhenTheWatchCanNotBeVerified)
{
    WithoutPrivileges ordinaryUser;
    const auto file = open("a");
    folder.chmod("a", 0);

    EXPECT_EQ(poll(file), 1);
    EXPECT_TRUE(notifier.comparesStamps(file.token));
    EXPECT_EQ(poll(file), 0);

    folder.chmod("a", 0600);
    EXPECT_EQ(poll(file), 1);
}

} // namespace

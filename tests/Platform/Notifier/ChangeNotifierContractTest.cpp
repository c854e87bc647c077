// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "tests/support/FakeChangeNotifier.h"
#include "tests/support/NotifierFixture.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <string>

namespace {

// How a notifier comes by its knowledge, for the tests that hold for all of them.
enum class Knowledge { events, stamps, told };

std::string nameOf(const testing::TestParamInfo<Knowledge>& info)
{
    switch (info.param) {
    case Knowledge::events:
        return "ByEvents";
    case Knowledge::stamps:
        return "ByStamps";
    case Knowledge::told:
        return "Fake";
    }
    return {};
}

class ChangeNotifierContractTest : public NotifierFixture,
                                   public testing::WithParamInterface<Knowledge> {
protected:
    ChangeNotifierContractTest()
    {
        if (GetParam() == Knowledge::stamps)
            notifier.setWatchLimit(0);
        for (const auto* name : { "a", "b" })
            folder.write(name);
        refOfA = ref("a");
        refOfB = ref("b");
    }

    bool isFake() const { return GetParam() == Knowledge::told; }

    zef::ChangeNotifier& tested()
    {
        return isFake() ? static_cast<zef::ChangeNotifier&>(fake) : notifier;
    }

    // Hooks: what happens to the objects.
    void changeA() { isFake() ? fake.fire(refOfA) : void(folder.append("a", "more")); }
    void removeA() { isFake() ? fake.vanish(refOfA) : folder.remove("a"); }

    int openA() { return tested().open(refOfA, folder.url("a")); }
    int openB() { return tested().open(refOfB, folder.url("b")); }
    int pollA(int token) { return tested().poll(token, refOfA, folder.url("a")); }
    int pollB(int token) { return tested().poll(token, refOfB, folder.url("b")); }

    FakeChangeNotifier fake;
    zef::FSRef refOfA;
    zef::FSRef refOfB;
};

TEST_P(ChangeNotifierContractTest, HasAQueue)
{
    EXPECT_GE(tested().createQueue(), 0);
}

TEST_P(ChangeNotifierContractTest, ReportsNothingWhenNothingHappened)
{
    const int token = openA();

    EXPECT_GT(token, 0);
    EXPECT_EQ(pollA(token), 0);
    EXPECT_EQ(pollA(token), 0);
}

TEST_P(ChangeNotifierContractTest, ReportsWhatHappenedOnce)
{
    const int token = openA();

    changeA();

    EXPECT_EQ(pollA(token), 1);
    EXPECT_EQ(pollA(token), 0);
}

TEST_P(ChangeNotifierContractTest, ReportsSeveralEventsAsOne)
{
    const int token = openA();

    changeA();
    changeA();

    EXPECT_EQ(pollA(token), 1);
    EXPECT_EQ(pollA(token), 0);
}

TEST_P(ChangeNotifierContractTest, DoesNotReportWhatHappenedBeforeOpening)
{
    changeA();
    const int token = openA();

    EXPECT_EQ(pollA(token), 0);
}

TEST_P(ChangeNotifierContractTest, DoesNotReportWhatHappensToOthers)
{
    const int token = openB();

    changeA();

    EXPECT_EQ(pollB(token), 0);
}

TEST_P(ChangeNotifierContractTest, GivesEachTokenOfAnObjectItsOwnAnswer)
{
    const int first = openA();
    const int second = openA();
    EXPECT_NE(first, second);

    changeA();

    EXPECT_EQ(pollA(first), 1);
    EXPECT_EQ(pollA(first), 0);
    EXPECT_EQ(pollA(second), 1);
}

TEST_P(ChangeNotifierContractTest, KeepsOneTokenWhenAnotherOfTheObjectIsClosed)
{
    const int first = openA();
    const int second = openA();
    tested().close(first);

    changeA();

    EXPECT_EQ(pollA(second), 1);
}

TEST_P(ChangeNotifierContractTest, ReportsTheEndOfAnObjectOnce)
{
    const int token = openA();

    removeA();

    EXPECT_EQ(pollA(token), 1);
    EXPECT_EQ(pollA(token), 0);
}

TEST_P(ChangeNotifierContractTest, GivesNoTokenForWhatDoesNotExist)
{
    removeA();

    EXPECT_EQ(openA(), 0);
}

TEST_P(ChangeNotifierContractTest, SaysOfAClosedTokenThatItIsNotOpen)
{
    const int token = openA();
    tested().close(token);
    errno = 0;

    EXPECT_EQ(pollA(token), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST_P(ChangeNotifierContractTest, SaysOfNumbersThatAreNoTokensThatTheyAreNotOpen)
{
    const int token = openA();

    for (const int number : { 0, -1, token + 1, std::numeric_limits<int>::max() }) {
        errno = 0;
        EXPECT_EQ(pollA(number), -1) << number;
        EXPECT_EQ(errno, EBADF) << number;
    }
}

TEST_P(ChangeNotifierContractTest, ClosesNothingForAClosedToken)
{
    const int closed = openA();
    tested().close(closed);
    const int token = openA();

    tested().close(closed);
    tested().close(0);

    EXPECT_EQ(pollA(token), 0);
}

TEST_P(ChangeNotifierContractTest, DoesNotGiveAClosedNumberOutAgainSoon)
{
    const int closed = openA();
    tested().close(closed);

    for (int count = 0; count < 100; ++count) {
        const int token = openA();
        EXPECT_NE(token, closed);
        tested().close(token);
    }
}

TEST_P(ChangeNotifierContractTest, ReportsInARoundWhatHappenedBefore)
{
    const int token = openA();
    changeA();

    tested().beginRound();
    EXPECT_EQ(pollA(token), 1);
    EXPECT_EQ(pollA(token), 0);
    tested().endRound();
}

TEST_P(ChangeNotifierContractTest, ReportsAfterARoundWhatHappenedInIt)
{
    const int token = openA();
    tested().beginRound();
    changeA();
    tested().endRound();

    EXPECT_EQ(pollA(token), 1);
}

INSTANTIATE_TEST_SUITE_P(All, ChangeNotifierContractTest,
    testing::Values(Knowledge::events, Knowledge::stamps, Knowledge::told), nameOf);

// What rounds put off; a comparison of stamps sees everything at once.
class ChangeNotifierRoundContractTest : public ChangeNotifierContractTest { };

TEST_P(ChangeNotifierRoundContractTest, PutsOffWhatHappensInARoundToTheNext)
{
    const int token = openA();
    tested().beginRound();
    changeA();
    EXPECT_EQ(pollA(token), 0);
    tested().endRound();

    tested().beginRound();
    EXPECT_EQ(pollA(token), 1);
    tested().endRound();
}

TEST_P(ChangeNotifierRoundContractTest, DoesNotReadTheQueueInAnInnerRound)
{
    const int token = openA();
    tested().beginRound();
    changeA();
    tested().beginRound();
    EXPECT_EQ(pollA(token), 0);
    tested().endRound();
    EXPECT_EQ(pollA(token), 0);
    tested().endRound();

    EXPECT_EQ(pollA(token), 1);
}

INSTANTIATE_TEST_SUITE_P(Queues, ChangeNotifierRoundContractTest,
    testing::Values(Knowledge::events, Knowledge::told), nameOf);

class FakeChangeNotifierTest : public testing::Test {
protected:
    FakeChangeNotifier notifier;
    zef::FSRef ref;
};

TEST_F(FakeChangeNotifierTest, HasNoQueueWhenToldSo)
{
    notifier.setQueueFails(true);

    EXPECT_EQ(notifier.createQueue(), -1);
}

TEST_F(FakeChangeNotifierTest, OpensNothingWhenToldSo)
{
    notifier.setOpenFails(true);

    EXPECT_EQ(notifier.open(ref, nullptr), 0);
    EXPECT_EQ(notifier.openTokenCount(), 0u);
}

TEST_F(FakeChangeNotifierTest, FailsPollsWithTheGivenError)
{
    const int token = notifier.open(ref, nullptr);
    notifier.fire(ref);
    notifier.setPollError(EIO);
    errno = 0;
    EXPECT_EQ(notifier.poll(token, ref, nullptr), -1);
    EXPECT_EQ(errno, EIO);

    notifier.setPollError(0);
    EXPECT_EQ(notifier.poll(token, ref, nullptr), 1);
}

TEST_F(FakeChangeNotifierTest, CountsTokensAndPolls)
{
    const int token = notifier.open(ref, nullptr);
    notifier.poll(token, ref, nullptr);
    EXPECT_EQ(notifier.openTokenCount(), 1u);
    EXPECT_EQ(notifier.openTokenCount(ref), 1u);
    EXPECT_EQ(notifier.pollCount(), 1u);

    notifier.close(token);
    EXPECT_EQ(notifier.openTokenCount(ref), 0u);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/FewDescriptors.h"
#include "tests/support/Readiness.h"
#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

namespace {

using zef::makeRef;
using zef::Ref;
using zef::Repeats;
using zef::RunLoop;
using zef::RunLoopMode;
using zef::Timer;
using zef::TimerModes;

constexpr auto forever = std::numeric_limits<double>::infinity();

// A run loop needs three at once.
constexpr int tooFewDescriptors = 2;

/// A run loop by the system's clock, seen as a foreign main loop sees it.
class RunLoopDescriptorTest : public testing::Test {
protected:
    /// What a foreign main loop does with the descriptor, until `isDone`.
    template <typename Condition> void driveUntil(Condition isDone)
    {
        while (!isDone()) {
            ASSERT_TRUE(becomesReadable(descriptor));
            loop.perform();
        }
    }

    Ref<Timer> schedule(double delay, TimerModes modes = TimerModes::defaultMode)
    {
        auto timer = makeRef<Timer>(delay, 0, Repeats::no, [this](Timer&) { ++firings; });
        loop.addTimer(timer, modes);
        return timer;
    }

    int firings = 0;
    RunLoop loop;
    // Asked for once, as a host does.
    int descriptor = loop.descriptor();
};

TEST_F(RunLoopDescriptorTest, StaysTheSameAndIsNotInherited)
{
    EXPECT_GE(descriptor, 0);
    EXPECT_EQ(loop.descriptor(), descriptor);
    EXPECT_TRUE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
}

TEST_F(RunLoopDescriptorTest, IsQuietWhenNothingIsScheduled)
{
    EXPECT_FALSE(isReadable(descriptor));

    schedule(1000);

    EXPECT_FALSE(isReadable(descriptor));
}

TEST_F(RunLoopDescriptorTest, DrivesARepeatingTimerThroughPoll)
{
    loop.scheduleTimer(0.001, Repeats::yes, [this](Timer&) { ++firings; });

    driveUntil([this] { return firings == 5; });

    EXPECT_EQ(firings, 5);
}

TEST_F(RunLoopDescriptorTest, IsQuietAgainAfterThePass)
{
    schedule(0);
    loop.post([this] { ++firings; });
    ASSERT_TRUE(becomesReadable(descriptor));

    loop.perform();

    EXPECT_EQ(firings, 2);
    EXPECT_FALSE(isReadable(descriptor));
}

TEST_F(RunLoopDescriptorTest, IsReadableForADueTimerWhileThePostedActionsRun)
{
    bool wasReadable = false;
    schedule(0);
    loop.post([&] { wasReadable = isReadable(descriptor); });

    loop.perform();

    EXPECT_TRUE(wasReadable);
    EXPECT_FALSE(isReadable(descriptor));
}

TEST_F(RunLoopDescriptorTest, IsReadableForAPostedActionWhileATimerFires)
{
    bool wasReadable = false;
    loop.scheduleTimer(0, Repeats::no, [&](Timer&) {
        loop.post([] {});
        wasReadable = isReadable(descriptor);
    });

    loop.perform();

    EXPECT_TRUE(wasReadable);
}

TEST_F(RunLoopDescriptorTest, WakesForWhatWasScheduledBeforeItWasMade)
{
    RunLoop scheduled;
    scheduled.scheduleTimer(0, Repeats::no, [](Timer&) {});
    RunLoop posted;
    posted.post([] {});

    EXPECT_TRUE(becomesReadable(scheduled.descriptor()));
    EXPECT_TRUE(becomesReadable(posted.descriptor()));
}

TEST_F(RunLoopDescriptorTest, StaysQuietForTimersOfAnotherMode)
{
    schedule(0);
    ASSERT_TRUE(becomesReadable(descriptor));

    loop.pushMode(RunLoopMode::modal);
    EXPECT_FALSE(isReadable(descriptor));
    loop.popMode();

    EXPECT_TRUE(becomesReadable(descriptor));
}

TEST_F(RunLoopDescriptorTest, WakesForCommonTimersInEveryMode)
{
    loop.pushMode(RunLoopMode::modal);

    schedule(0, TimerModes::common);

    EXPECT_TRUE(becomesReadable(descriptor));
}

TEST_F(RunLoopDescriptorTest, IsQuietAfterTheTimerWasInvalidated)
{
    auto timer = schedule(0);
    ASSERT_TRUE(becomesReadable(descriptor));

    timer->invalidate();

    EXPECT_FALSE(isReadable(descriptor));
}

TEST_F(RunLoopDescriptorTest, StaysReadableForWhatThePassLeftToTheNext)
{
    loop.post([this] { loop.post([this] { ++firings; }); });
    loop.perform();
    EXPECT_TRUE(becomesReadable(descriptor));
    loop.perform();

    loop.scheduleTimer(0, Repeats::no, [this](Timer&) { schedule(0); });
    loop.perform();
    EXPECT_TRUE(becomesReadable(descriptor));
    loop.perform();

    EXPECT_EQ(firings, 2);
}

TEST_F(RunLoopDescriptorTest, ServesANestedForeignLoopInsideACallback)
{
    bool done = false;
    loop.scheduleTimer(0, Repeats::no, [&](Timer&) {
        schedule(0);
        driveUntil([this] { return firings == 1; });
        done = !isReadable(descriptor);
    });

    loop.perform();

    EXPECT_TRUE(done);
}

TEST_F(RunLoopDescriptorTest, IsQuietForATimerThatIsBusyWithItsAction)
{
    bool wasQuiet = false;
    auto timer = loop.scheduleTimer(0.0001, Repeats::yes, [&](Timer& self) {
        const auto start = zef::Clock::system().monotonicSeconds();
        while (zef::Clock::system().monotonicSeconds() < start + 0.001) { }
        wasQuiet = !isReadable(descriptor);
        self.invalidate();
    });

    driveUntil([&] { return !timer->isValid(); });

    EXPECT_TRUE(wasQuiet);
}

TEST_F(RunLoopDescriptorTest, WakesWhenAnotherThreadPosts)
{
    std::thread poster([this] { loop.post([this] { ++firings; }); });

    EXPECT_TRUE(becomesReadable(descriptor));
    loop.perform();
    poster.join();

    EXPECT_EQ(firings, 1);
}

/// An epoll instance around the loop's descriptor, as event libraries have it.
class NestedEpoll {
public:
    NestedEpoll(int descriptor, unsigned int extraEvents)
    {
        epoll_event event{};
        event.events = EPOLLIN | extraEvents;
        epoll_ctl(_epoll, EPOLL_CTL_ADD, descriptor, &event);
    }

    ~NestedEpoll() { close(_epoll); }

    bool wait() const
    {
        epoll_event event{};
        return epoll_wait(_epoll, &event, 1, 60'000) == 1;
    }

private:
    int _epoll = epoll_create1(EPOLL_CLOEXEC);
};

class NestedEpollTest : public RunLoopDescriptorTest,
                        public testing::WithParamInterface<unsigned int> { };

INSTANTIATE_TEST_SUITE_P(EveryTrigger, NestedEpollTest, testing::Values(0u, unsigned(EPOLLET)),
    [](const auto& value) { return value.param ? "Edge" : "Level"; });

TEST_P(NestedEpollTest, DrivesTimersAndPostedActions)
{
    NestedEpoll epoll(descriptor, GetParam());
    loop.scheduleTimer(0.001, Repeats::yes, [this](Timer&) {
        ++firings;
        loop.post([this] { ++firings; });
    });

    while (firings < 6) {
        ASSERT_TRUE(epoll.wait());
        loop.perform();
    }
}

TEST_P(NestedEpollTest, WakesAgainForActionsThatAThrowingPassLeft)
{
    NestedEpoll epoll(descriptor, GetParam());
    loop.post([] { throw 1; });
    loop.post([this] { ++firings; });

    ASSERT_TRUE(epoll.wait());
    EXPECT_THROW(loop.perform(), int);
    ASSERT_TRUE(epoll.wait());
    loop.perform();

    EXPECT_EQ(firings, 1);
}

TEST_P(NestedEpollTest, WakesAgainForTimersThatAThrowingPassLeft)
{
    NestedEpoll epoll(descriptor, GetParam());
    schedule(0);
    ASSERT_TRUE(becomesReadable(descriptor));
    loop.post([] { throw 1; });

    ASSERT_TRUE(epoll.wait());
    EXPECT_THROW(loop.perform(), int);
    ASSERT_TRUE(epoll.wait());
    loop.perform();

    EXPECT_EQ(firings, 1);
}

TEST_F(RunLoopDescriptorTest, ALoopWithoutDescriptorWorksAndGetsOneLater)
{
    RunLoop poor;
    {
        FewDescriptors few(tooFewDescriptors);
        poor.scheduleTimer(0, Repeats::no, [this](Timer&) { ++firings; });
        EXPECT_EQ(poor.descriptor(), -1);
        EXPECT_EQ(poor.secondsUntilNextTimer(), 0);

        poor.perform();
        EXPECT_EQ(firings, 1);
        poor.scheduleTimer(0, Repeats::no, [this](Timer&) { ++firings; });
    }

    EXPECT_GE(poor.descriptor(), 0);
    EXPECT_TRUE(becomesReadable(poor.descriptor()));
}

TEST_F(RunLoopDescriptorTest, ALoopWithoutDescriptorWaitsForTimersAndPosts)
{
    FewDescriptors few(tooFewDescriptors);
    RunLoop poor;
    poor.scheduleTimer(0.001, Repeats::no, [&](Timer&) {
        ++firings;
        poor.stop();
    });
    poor.run(RunLoopMode::defaultMode, forever);
    EXPECT_EQ(firings, 1);

    std::thread poster([&] { poor.post([&] { poor.stop(); }); });
    poor.run(RunLoopMode::defaultMode, forever);
    poster.join();

    EXPECT_EQ(poor.descriptor(), -1);
}

TEST_F(RunLoopDescriptorTest, RunEndsWhenItsTimeIsThrough)
{
    const auto start = zef::Clock::system().monotonicSeconds();

    loop.run(RunLoopMode::defaultMode, 0.005);

    EXPECT_GE(zef::Clock::system().monotonicSeconds(), start + 0.005);
}

TEST_F(RunLoopDescriptorTest, RunFiresATimerThatIsDueBeforeItsEnd)
{
    schedule(0.001);

    loop.run(RunLoopMode::defaultMode, 0.002);

    EXPECT_EQ(firings, 1);
}

/// A run loop by a clock that only the test moves.
class SteppedRunLoopDescriptorTest : public testing::Test {
protected:
    int firings = 0;
    SteppedClock clock;
    RunLoop loop{ clock };
};

TEST_F(SteppedRunLoopDescriptorTest, TellsOfAStepWhenItIsAskedForTheDescriptor)
{
    loop.scheduleTimer(30, Repeats::no, [this](Timer&) { ++firings; });
    EXPECT_FALSE(isReadable(loop.descriptor()));

    clock.advance(30);

    EXPECT_TRUE(becomesReadable(loop.descriptor()));
}

TEST_F(SteppedRunLoopDescriptorTest, IsQuietAfterAPassThatFoundNothingDue)
{
    loop.scheduleTimer(0.001, Repeats::no, [this](Timer&) { ++firings; });
    const auto descriptor = loop.descriptor();
    ASSERT_TRUE(becomesReadable(descriptor));

    // The system's time has passed; by the loop's there is still long to wait.
    clock.advance(-1000);
    loop.perform();

    EXPECT_EQ(firings, 0);
    EXPECT_FALSE(isReadable(descriptor));
}

TEST_F(SteppedRunLoopDescriptorTest, RunEndsByTheSystemsClockWhenNobodySteps)
{
    loop.scheduleTimer(1000, Repeats::yes, [this](Timer&) { ++firings; });

    loop.run(RunLoopMode::defaultMode, 0.005);

    EXPECT_EQ(firings, 0);
}

TEST_F(SteppedRunLoopDescriptorTest, RunFollowsAClockThatACallbackSteps)
{
    loop.scheduleTimer(30, Repeats::yes, [this](Timer&) { ++firings; });
    loop.post([this] { clock.advance(100); });
    loop.post([this] { loop.post([] {}); });

    loop.run(RunLoopMode::defaultMode, 100);

    // The run's time was through after the first pass, at whose start nothing was due.
    EXPECT_EQ(firings, 0);
    loop.run(RunLoopMode::defaultMode, 0);
    EXPECT_EQ(firings, 1);
}

} // namespace

// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/RunLoopFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using zef::RunLoop;
using zef::RunLoopMode;

constexpr auto forever = std::numeric_limits<double>::infinity();

class RunLoopRunTest : public RunLoopFixture { };

INSTANTIATE_TEST_SUITE_P(EveryClock, RunLoopRunTest,
    testing::Values(ClockKind::system, ClockKind::stepped),
    [](const auto& value) { return value.param == ClockKind::system ? "System" : "Stepped"; });

TEST_P(RunLoopRunTest, RunMakesOnePassWhenItHasNoTime)
{
    post("a");
    loop.post([this] { post("b"); });

    loop.run(RunLoopMode::defaultMode, 0);

    EXPECT_EQ(order, Order{ "a" });
}

TEST_P(RunLoopRunTest, RunIsInItsModeAndGivesTheFormerOneBack)
{
    auto inside = RunLoopMode::defaultMode;
    loop.post([&] { inside = loop.mode(); });

    loop.run(RunLoopMode::eventTracking, 0);

    EXPECT_EQ(inside, RunLoopMode::eventTracking);
    EXPECT_EQ(loop.mode(), RunLoopMode::defaultMode);
}

TEST_P(RunLoopRunTest, StopEndsARunAfterThePassThatItIsIn)
{
    loop.post([this] { loop.stop(); });
    post("same pass");
    loop.post([this] { post("next pass"); });

    loop.run(RunLoopMode::defaultMode, forever);

    EXPECT_EQ(order, Order{ "same pass" });
}

TEST_P(RunLoopRunTest, StopEndsTheInnermostRunOnly)
{
    loop.post([this] {
        loop.post([this] { loop.stop(); });
        loop.run(RunLoopMode::modal, forever);
        note("inner ended");
        loop.post([this] {
            note("outer goes on");
            loop.stop();
        });
    });

    loop.run(RunLoopMode::defaultMode, forever);

    EXPECT_EQ(order, (Order{ "inner ended", "outer goes on" }));
}

TEST_P(RunLoopRunTest, StopOutsideARunDoesNothing)
{
    loop.stop();
    loop.post([this] { loop.post([this] { note("second pass"), loop.stop(); }); });

    loop.run(RunLoopMode::defaultMode, forever);

    EXPECT_EQ(order, Order{ "second pass" });
}

TEST_P(RunLoopRunTest, ARunWakesForWhatAnotherThreadPosts)
{
    std::thread poster([this] { loop.post([this] { loop.stop(); }); });

    loop.run(RunLoopMode::defaultMode, forever);

    poster.join();
}

TEST_P(RunLoopRunTest, KeepsTheOrderOfWhatEachOfManyThreadsPosts)
{
    constexpr int threadCount = 4;
    constexpr int postCount = 500;
    std::vector<std::vector<int>> received(threadCount);
    std::vector<std::thread> posters;
    int finished = 0;
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
        posters.emplace_back([&, thread] {
            for (int number = 0; number < postCount; ++number)
                loop.post([&, thread, number] { received[thread].push_back(number); });
            loop.post([&] {
                if (++finished == threadCount)
                    loop.stop();
            });
        });
    }

    loop.run(RunLoopMode::defaultMode, forever);
    for (auto& poster : posters)
        poster.join();

    for (const auto& numbers : received) {
        ASSERT_EQ(numbers.size(), static_cast<std::size_t>(postCount));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST_P(RunLoopRunTest, MayEndAsSoonAsWhatWasPostedHasRun)
{
    for (int round = 0; round < 100; ++round) {
        auto shortLived = std::make_unique<RunLoop>(clock());
        std::thread poster([&loop = *shortLived] { loop.post([&loop] { loop.stop(); }); });
        shortLived->run(RunLoopMode::defaultMode, forever);
        shortLived = nullptr;
        poster.join();
    }
}

TEST_P(RunLoopRunTest, AnExceptionEndsARunAndItsMode)
{
    loop.post([] { throw std::runtime_error("host"); });

    EXPECT_THROW(loop.run(RunLoopMode::modal, 1), std::runtime_error);

    EXPECT_EQ(loop.mode(), RunLoopMode::defaultMode);
}

} // namespace

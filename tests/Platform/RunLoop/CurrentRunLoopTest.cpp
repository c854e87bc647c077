// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using zef::Ref;
using zef::Repeats;
using zef::RunLoop;
using zef::Timer;

TEST(CurrentRunLoopTest, EveryThreadHasItsOwn)
{
    RunLoop* other = nullptr;
    std::thread([&] { other = &RunLoop::current(); }).join();

    EXPECT_EQ(&RunLoop::current(), &RunLoop::current());
    EXPECT_NE(&RunLoop::current(), other);
}

TEST(CurrentRunLoopTest, EndsWithItsThread)
{
    Ref<Timer> timer;
    std::thread([&] {
        timer = RunLoop::current().scheduleTimer(1, Repeats::yes, [](Timer&) {});
    }).join();

    EXPECT_FALSE(timer->isValid());
}

TEST(CurrentRunLoopTest, OutlivesTheThreadsOwnObjects)
{
    struct LateUser {
        ~LateUser()
        {
            *validity = RunLoop::current().scheduleTimer(1, Repeats::no, [](Timer&) {});
        }
        Ref<Timer>* validity;
    };
    Ref<Timer> timer;
    bool wasValid = false;
    std::thread([&] {
        RunLoop::current();
        static thread_local LateUser user{ &timer };
        static_cast<void>(user);
        wasValid = true;
    }).join();

    EXPECT_TRUE(wasValid);
    ASSERT_TRUE(timer);
    EXPECT_FALSE(timer->isValid());
}

TEST(CurrentRunLoopTest, MayBeReplacedForATest)
{
    SteppedClock clock;
    RunLoop replacement(clock);
    auto& own = RunLoop::current();

    RunLoop::replaceCurrent(&replacement);
    EXPECT_EQ(&RunLoop::current(), &replacement);
    RunLoop::replaceCurrent(nullptr);

    EXPECT_EQ(&RunLoop::current(), &own);
}

} // namespace

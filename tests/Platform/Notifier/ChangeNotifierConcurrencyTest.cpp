// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "tests/support/NotifierFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <string>
#include <thread>
#include <vector>

namespace {

class ChangeNotifierConcurrencyTest : public NotifierFixture {
protected:
    // Runs `work` with the numbers from 0 on, each on a thread of its own.
    template <typename Work> void onThreads(int count, Work work)
    {
        std::vector<std::thread> threads;
        threads.reserve(static_cast<std::size_t>(count));
        for (int number = 0; number < count; ++number)
            threads.emplace_back(work, number);
        for (auto& thread : threads)
            thread.join();
    }
};

TEST_F(ChangeNotifierConcurrencyTest, GivesEveryThreadItsOwnAnswers)
{
    constexpr int threadCount = 4;
    constexpr int repetitions = 200;
    std::atomic<int> mistakes{ 0 };
    for (int number = 0; number < threadCount; ++number)
        folder.write(std::to_string(number));

    onThreads(threadCount, [&](int number) {
        const auto name = std::to_string(number);
        for (int count = 0; count < repetitions; ++count) {
            const auto file = open(name);
            mistakes += poll(file) != 0;
            folder.append(name, "x");
            if (count % 2)
                notifier.beginRound();
            mistakes += poll(file) != 1;
            mistakes += poll(file) != 0;
            if (count % 2)
                notifier.endRound();
            notifier.close(file.token);
            mistakes += poll(file) != -1;
        }
    });

    EXPECT_EQ(mistakes, 0);
    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierConcurrencyTest, SharesWatchesBetweenThreads)
{
    constexpr int threadCount = 4;
    constexpr int repetitions = 100;
    std::atomic<int> mistakes{ 0 };
    std::barrier together(threadCount);
    folder.write("shared");

    onThreads(threadCount, [&](int number) {
        for (int count = 0; count < repetitions; ++count) {
            const auto file = open("shared");
            mistakes += poll(file) != 0;
            together.arrive_and_wait();
            if (number == count % threadCount)
                folder.append("shared", "x");
            together.arrive_and_wait();
            mistakes += poll(file) != 1;
            notifier.close(file.token);
            together.arrive_and_wait();
        }
    });

    EXPECT_EQ(mistakes, 0);
    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierConcurrencyTest, SurvivesObjectsThatComeAndGo)
{
    constexpr int repetitions = 300;
    std::atomic<bool> isDone{ false };
    folder.write("a");
    const auto refOfA = ref("a");
    locator.setAnswer(folder.url("b"));

    std::thread mover([&] {
        while (!isDone) {
            folder.rename("a", "b");
            folder.rename("b", "a");
        }
    });
    onThreads(3, [&](int) {
        for (int count = 0; count < repetitions; ++count) {
            const auto file = open(refOfA, folder.url("a"));
            EXPECT_GT(file.token, 0);
            EXPECT_GE(poll(file), 0);
            EXPECT_GE(poll(file), 0);
            notifier.close(file.token);
        }
    });
    isDone = true;
    mover.join();

    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierConcurrencyTest, ReadsTheQueueForOneThreadDuringAnothersRound)
{
    folder.write("a");
    const auto file = openVerified("a");
    notifier.beginRound();
    folder.append("a", "more");

    int answer = -1;
    std::thread([&] { answer = poll(file); }).join();
    notifier.endRound();

    EXPECT_EQ(answer, 1);
}

} // namespace

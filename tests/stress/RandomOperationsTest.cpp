// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "tests/stress/StressFixture.h"

#include <chrono>
#include <limits>
#include <string>

namespace {

enum class Limit { none, noWatches };

// Runs seed after seed until the time is over. The environment gives the first seed, so that a
// failure, which names its seed, can be repeated.
class RandomOperationsTest : public StressFixture, public testing::WithParamInterface<Limit> {
protected:
    RandomOperationsTest()
    {
        if (GetParam() == Limit::noWatches)
            zef::ChangeNotifier::shared().setWatchLimit(0);
    }

    ~RandomOperationsTest() override
    {
        _watched.clear();
        zef::ChangeNotifier::shared().setWatchLimit(std::numeric_limits<std::size_t>::max());
    }

    template <typename Work> void forEachSeed(Work work)
    {
        const auto end = std::chrono::steady_clock::now()
            + std::chrono::duration<double>(secondsToRun());
        auto seed = firstSeed();
        for (; std::chrono::steady_clock::now() < end && !HasFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            makeTree();
            watchSomeFolders();
            pollAndCompare();
            work(seed);
        }
        RecordProperty("seeds", std::to_string(seed - firstSeed()));
    }
};

TEST_P(RandomOperationsTest, RecordsTellWhatHappenedBetweenTwoPolls)
{
    forEachSeed([this](std::uint64_t seed) {
        for (std::uint64_t round = 0; round < 12 && !HasFailure(); ++round) {
            _meddler->begin(seed * 1000 + round, static_cast<int>(1 + round * 2));
            _meddler->finish();
            poll();
            for (const auto& folder : _watched) {
                if (folder->isValid())
                    folder->expectRecordsToTellChanges();
            }
            watchSomeFolders();
            pollAndCompare();
        }
    });
}

TEST_P(RandomOperationsTest, PollsDuringChangesComeTogetherWithTheDiskAfterwards)
{
    forEachSeed([this](std::uint64_t seed) {
        for (std::uint64_t round = 0; round < 6 && !HasFailure(); ++round) {
            _meddler->begin(seed * 1000 + round, 60);
            for (int count = 0; count < 20; ++count) {
                loadInBackground();
                poll();
            }
            _meddler->finish();
            _queue->waitUntilAllOperationsAreFinished();
            pollAndCompare();
            watchSomeFolders();
            pollAndCompare();
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Limits, RandomOperationsTest,
    testing::Values(Limit::none, Limit::noWatches), [](const auto& limit) {
        return limit.param == Limit::none ? "WithWatches" : "WithoutWatches";
    });

} // namespace

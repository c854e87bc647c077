// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "benchmarks/support/BenchmarkTrees.h"
#include "benchmarks/support/Comparison.h"

#include <algorithm>

#include <poll.h>

namespace {

// As a host with a counter in its window; takes the files and lets them go at the end.
class Counter final : public ZEFObject,
                      public ZEFAsynchronousFileLoaderDelegate,
                      public ZEFAsynchronousFileLoaderProgressDelegate {
public:
    bool isFinished() const { return _isFinished; }
    std::size_t count() const { return _files.size(); }
    std::size_t progressCalls() const { return _progressCalls; }

private:
    void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader*, std::uint32_t, ZEFFileItem*) override
    {
        ++_progressCalls;
    }

    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader*, ZEFFileItemArray* files) override
    {
        _isFinished = true;
        _files = files->takeAllObjects();
    }

    std::vector<zef::Ref<ZEFFileItem>> _files;
    std::size_t _progressCalls = 0;
    bool _isFinished = false;
};

// Twice the entries of the wide tree, found by one walk of the main thread's loader. The time is
// the longest that one pass of the main thread's run loop took, by the processor's clock: what
// other programs do at the same time stays out.
void longestPause(benchmark::State& state)
{
    const auto& path = BenchmarkTrees::shared().large();
    for (auto _ : state) {
        const auto counter = zef::makeRef<Counter>();
        const auto files = zef::makeRef<ZEFFileItemArray>();
        files->addObject(ZEFBasicInfoFileItem::classObject.newFileItemForPath(path));
        auto& loop = zef::RunLoop::current();
        double longest = 0;
        const auto loader = zef::makeRef<ZEFAsynchronousFileLoader>(counter.get());
        longest = Comparison::seconds(
            [&] { loader->startRecursivelyWithFilesToDepth(files.get(), -1); });
        while (!counter->isFinished()) {
            pollfd descriptor{ loop.descriptor(), POLLIN, 0 };
            ::poll(&descriptor, 1, 1000);
            longest = std::max(longest, Comparison::seconds([&] { loop.perform(); }));
        }
        if (counter->count() != BenchmarkTrees::largeCount() + 1) {
            state.SkipWithError("the walk is not complete");
            return;
        }
        state.SetIterationTime(longest);
        state.counters["progressCalls"] = static_cast<double>(counter->progressCalls());
    }
}

BENCHMARK(longestPause)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

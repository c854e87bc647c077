// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Loading/ZEFFilters.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "benchmarks/support/BenchmarkFolders.h"
#include "benchmarks/support/BenchmarkTrees.h"
#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Floors.h"

#include <chrono>
#include <utility>
#include <vector>

namespace {

using Load = zef::Ref<ZEFFileLoadOperation>;

Load newWalk(const ZEFFileItemClass& fileClass, const std::string& path)
{
    const auto files = zef::makeRef<ZEFFileItemArray>();
    files->addObject(fileClass.newFileItemForPath(path));
    auto walk = zef::makeRef<ZEFFileLoadOperation>();
    walk->setRecursive(true);
    walk->setFilesToIterate(files.get());
    return walk;
}

// From a tree on disk to registered items in an array. That they are let go again is not timed.
void compareWalk(benchmark::State& state, const ZEFFileItemClass& fileClass,
    const std::string& path, std::size_t count, ZEFFileFilter* fileFilter,
    const zef::Ref<ZEFDirectoryFilter>& directoryFilter)
{
    Comparison comparison(state);
    for (auto _ : state) {
        Load walk;
        comparison.round([&] { benchmark::DoNotOptimize(walkByHand(path)); },
            [&] {
                walk = newWalk(fileClass, path);
                walk->setFileFilter(fileFilter);
                walk->setDirectoryFilter(directoryFilter);
            },
            [&] { walk->start(); });
        if (walk->loadingArray()->count() != count + 1) {
            state.SkipWithError("the walk is not complete");
            break;
        }
    }
}

void walkWide(benchmark::State& state)
{
    compareWalk(state, ZEFFileItem::classObject, BenchmarkTrees::shared().wide(),
        BenchmarkTrees::entryCount(), nullptr, ZEFDirectoryFilter::filter());
}

void walkNarrow(benchmark::State& state)
{
    compareWalk(state, ZEFFileItem::classObject, BenchmarkTrees::shared().narrow(),
        BenchmarkTrees::narrowCount, nullptr, ZEFDirectoryFilter::filter());
}

enum class Filters { none, visible, normal, both };

// The items are of the class that the filters ask.
void walkFiltered(benchmark::State& state, Filters filters)
{
    zef::Ref<ZEFFileFilter> fileFilter;
    zef::Ref<ZEFDirectoryFilter> directoryFilter = ZEFDirectoryFilter::filter();
    if (filters == Filters::visible || filters == Filters::both)
        fileFilter = ZEFVisibleFileFilter::filter();
    if (filters == Filters::normal || filters == Filters::both)
        directoryFilter = ZEFNormalDirectoryFilter::filter();
    compareWalk(state, ZEFBasicInfoFileItem::classObject, BenchmarkTrees::shared().wide(),
        BenchmarkTrees::entryCount(), fileFilter.get(), directoryFilter);
}

double secondsNow()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Wall-clock time: processor time would hide that loads wait for each other.
double secondsOfLoads(std::size_t count, const std::vector<std::string>& paths)
{
    const auto queue = zef::makeRef<zef::OperationQueue>();
    queue->setMaxConcurrentOperationCount(count);
    std::vector<Load> loads;
    loads.reserve(paths.size());
    for (const auto& path : paths)
        loads.push_back(newWalk(ZEFFileItem::classObject, path));
    const double start = secondsNow();
    for (const auto& load : loads)
        queue->addOperation(load);
    queue->waitUntilAllOperationsAreFinished();
    return secondsNow() - start;
}

// The parts of the wide tree, so many at once; `throughput` is how much more gets done so than one
// after the other.
void walkAtOnce(benchmark::State& state)
{
    const auto parts = entryPaths(BenchmarkTrees::shared().wide());
    double alone = 0;
    double atOnce = 0;
    for (auto _ : state) {
        alone += secondsOfLoads(1, parts);
        const double time = secondsOfLoads(static_cast<std::size_t>(state.range(0)), parts);
        atOnce += time;
        state.SetIterationTime(time);
    }
    state.counters["throughput"] = alone / atOnce;
}

// Folders of 10,000 files, as many loads as there are, with 64 and with 8 at once.
void walkSixtyFour(benchmark::State& state)
{
    const std::vector<std::string> paths(64, BenchmarkFolders::shared().withFiles(10000));
    double few = 0;
    double many = 0;
    for (auto _ : state) {
        few += secondsOfLoads(8, paths);
        const double time = secondsOfLoads(64, paths);
        many += time;
        state.SetIterationTime(time);
    }
    state.counters["ratio"] = many / few;
}

BENCHMARK(walkWide)->Iterations(1)->Repetitions(5)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(walkNarrow)
    ->Iterations(2)
    ->Repetitions(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walkFiltered, none, Filters::none)
    ->Iterations(1)
    ->Repetitions(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walkFiltered, visible, Filters::visible)
    ->Iterations(1)
    ->Repetitions(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walkFiltered, normal, Filters::normal)
    ->Iterations(1)
    ->Repetitions(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(walkFiltered, both, Filters::both)
    ->Iterations(1)
    ->Repetitions(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(walkAtOnce)
    ->Arg(2)
    ->Iterations(1)
    ->Repetitions(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(walkSixtyFour)
    ->Iterations(1)
    ->Repetitions(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
